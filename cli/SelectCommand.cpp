// `steeldesign select --family F --steel GRADE [forces] [--length L and the member options] [--gamma-m0 X]
// [--json]`: the lightest profile of a catalogue family (smallest area, so smallest mass per metre) that
// passes the cross-section check and, with a length, the member checks; with the utilizations of it and
// of the next lighter one, which fails. Exit code 0 when a profile passes, 1 when none does, 2 for bad input.

#include "Commands.h"
#include "MemberOptions.h"
#include "Options.h"

#include <batch/BatchRun.h>
#include <report/ResultText.h>

#include <SectionCatalogue.h>

#include <algorithm>
#include <iostream>
#include <memory>

namespace cli {

using namespace batch;
using namespace report;

namespace {

struct SelectOptions {
    std::string family;
    std::string by;  // the older spelling of --rules: library or en
    SteelOption steel;
    MemberOptions member;
    std::optional<double> gammaM0;  // empty: from the standard mode
    bool json = false;
};

constexpr double steelDensity = 7850.0;  // kg/m3

struct Candidate {
    std::unique_ptr<SDBSection> section;
    RowResult result;
};

nlohmann::json candidateJson(const Candidate& c)
{
    nlohmann::json j = resultJson(c.result);
    j.erase("id");
    j.erase("line");
    j.erase("status");
    j["name"] = c.section->getName();
    j["A"] = c.section->getA();
    j["massPerMetre"] = c.section->getA() * steelDensity;
    return j;
}

void printCandidate(const char* title, const Candidate& c)
{
    const RowResult& r = c.result;
    std::cout << title << c.section->getName() << "  (" << number(c.section->getA() * 1e4, 1) << " cm2, "
              << number(c.section->getA() * steelDensity, 1) << " kg/m, class " << r.sectionClass << ")\n";
    const auto& names = utilizationNames();
    auto line = [&](const std::string& name, const kat::Nullable<double>& u) {
        if (!u.hasValue()) return;
        std::cout << "  " << name << std::string(26 - std::min<std::size_t>(name.size(), 25), ' ')
                  << number(u.value(), 3) << '\n';
    };
    for (std::size_t i = 0; i < r.crossSection.size(); ++i) line(names[i], r.crossSection[i]);
    for (std::size_t i = 0; i < r.member.size(); ++i) line(names[r.crossSection.size() + i], r.member[i]);
    std::cout << "  governing: " << (r.governing.empty() ? "-" : r.governing + " " + number(r.governingUtilization, 3))
              << ", " << design::toString(r.verdict) << "\n";
    if (r.rules == design::Rules::En && r.libraryGoverning)
        std::cout << "  the library's rules: " << number(r.libraryGoverning.value(), 3) << ", "
                  << design::toString(r.libraryVerdict)
                  << (r.departures != 0 ? " (" + design::departureNames(r.departures) + ")" : std::string()) << "\n";
    else if (r.departures != 0)
        std::cout << "  EN 1993-1-1 where the library departs: " << (r.enGoverning ? number(r.enGoverning.value(), 3) : "-")
                  << " (" << design::departureNames(r.departures) << ")\n";
}

void run(const SelectOptions& o, CommandResult& result)
{
    if (!o.by.empty() && o.by != "library" && o.by != "en")
        throw InputError("--by: '" + o.by + "' is not one of library, en");
    // --by, where given, names the rules as --rules does.
    const design::Rules rules = o.by.empty() ? o.member.rules.resolve()
                                             : (o.by == "en" ? design::Rules::En : design::Rules::Library);
    const std::vector<std::string> names = SDBCatalogue::names(o.family);
    if (names.empty()) {
        std::string known;
        for (const std::string& f : SDBCatalogue::families()) known += (known.empty() ? "" : ", ") + f;
        throw InputError("--family: unknown family '" + o.family + "' (known: " + known + ")");
    }
    KaConstrSteel steel = o.steel.resolve();
    if (o.gammaM0 && !(*o.gammaM0 > 0.0)) throw InputError("--gamma-m0: must be positive, got " + design::shortestText(*o.gammaM0));
    // Validates the member options once, on the first profile.
    std::vector<Candidate> candidates;
    for (const std::string& name : names) candidates.push_back({design::makeSection(name), {}});
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.section->getA() < b.section->getA(); });

    std::size_t selected = candidates.size();
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        SDBSection* section = candidates[i].section.get();
        const design::MemberRequest member = o.member.toRequest(section, &steel);
        const design::CrossSectionRequest cross{section, &steel, member.forces, o.gammaM0.value_or(0.0), false};
        candidates[i].result = evaluateChecks(cross, o.member.memberChecked() ? &member : nullptr, rules);
        if (candidates[i].result.fulfilled) {
            selected = i;
            break;
        }
    }

    const bool found = selected < candidates.size();
    const Candidate* lighter = found && selected > 0 ? &candidates[selected - 1] : nullptr;
    if (o.json) {
        nlohmann::json out = {{"family", o.family},
                              {"by", rules == design::Rules::En ? "en" : "library"},
                              {"rules", design::toString(rules)},
                              {"steel", steel.getName()},
                              {"memberChecked", o.member.memberChecked()},
                              {"selected", found ? candidateJson(candidates[selected]) : nlohmann::json(nullptr)},
                              {"nextLighter", lighter ? candidateJson(*lighter) : nlohmann::json(nullptr)}};
        std::cout << out.dump(2) << '\n';
    } else {
        std::cout << "Lightest " << o.family << " in " << steel.getName() << " for " << describeForces(o.member.forces.toForces())
                  << (o.member.memberChecked()
                          ? ", buckling lengths Lcr,y " + number(o.member.lengths().y, 2) + " m, Lcr,z " +
                                number(o.member.lengths().z, 2) + " m, LLT " +
                                number(o.member.lengths().lateralTorsional, 2) + " m"
                          : ", cross-section only")
                  << "\n\n";
        if (found) {
            printCandidate("selected: ", candidates[selected]);
            if (lighter) {
                std::cout << '\n';
                printCandidate("next lighter: ", *lighter);
            } else {
                std::cout << "\n(the lightest profile of the family passes)\n";
            }
        } else {
            std::cout << "no profile of the family passes every check\n";
            if (!candidates.empty()) printCandidate("heaviest: ", candidates.back());
        }
    }
    result.exitCode = found ? exitFulfilled : exitNotFulfilled;
}

} // namespace

void registerSelectCommand(CLI::App& app, CommandResult& result)
{
    auto options = std::make_shared<SelectOptions>();
    CLI::App* sub = app.add_subcommand(
        "select", "the lightest profile of a family that passes every check (exit 0 found, 1 none passes)");
    sub->add_option("--family", options->family, "catalogue family, e.g. IPE, HEA, UB, UC, CFRHS (steeldesign sections lists them)")
        ->required();
    options->steel.addTo(*sub);
    options->member.addTo(*sub);
    addNumber(*sub, "--gamma-m0", options->gammaM0, "partial factor gammaM0 (default: from the standard mode)");
    sub->add_option("--by", options->by, "the rules of the selection, as --rules (library or en)");
    sub->add_flag("--json", options->json, "machine-readable output (SI units: m, kN, kNm, kN/m2)");
    sub->callback([options, &result] { run(*options, result); });
}

} // namespace cli
