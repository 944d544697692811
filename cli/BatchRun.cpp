#include "BatchRun.h"

#include "Parallel.h"

#include <SectionCatalogue.h>
#include <design/SectionNotation.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <istream>
#include <mutex>
#include <thread>
#include <unordered_map>

namespace cli {

using namespace SteelDesign;

namespace {

// Sections are looked up once per designation (catalogue or dimensions) and shared read-only by the
// worker threads: the checks only read a section. A name that gives no section keeps its message.
class SectionCache {
public:
    struct Entry {
        std::unique_ptr<SDBSection> section;
        std::string error;
    };
    const Entry& get(const std::string& name)
    {
        const std::string key = SDBCatalogue::normalise(name);
        std::lock_guard<std::mutex> lock(mutex_);
        auto it = std::find_if(entries_.begin(), entries_.end(), [&](const auto& e) { return e.first == key; });
        if (it != entries_.end()) return *it->second;
        auto entry = std::make_unique<Entry>();
        entry->section = design::makeSection(name, entry->error);
        entries_.emplace_back(key, std::move(entry));
        return *entries_.back().second;
    }

private:
    std::mutex mutex_;
    std::vector<std::pair<std::string, std::unique_ptr<Entry>>> entries_;
};

MomentDiagram diagramOf(const std::string& text)
{
    return text == "parabolic" ? MomentDiagram::Parabolic : MomentDiagram::Polygonal;
}

ApplicationPoint loadPointOf(const std::string& text)
{
    if (text == "top") return ApplicationPoint::Top;
    if (text == "bottom") return ApplicationPoint::Bottom;
    return ApplicationPoint::Center;
}

// Ranks a utilization; a value that is not a number counts as the largest (it is never fulfilled).
double rank(double u) { return std::isnan(u) ? std::numeric_limits<double>::infinity() : u; }

// JSON has no infinity or NaN: such a utilization is written as the string "inf", "-inf" or "nan".
nlohmann::json utilizationJson(const kat::Nullable<double>& u)
{
    if (!u.hasValue()) return nullptr;
    const double v = u.value();
    if (std::isnan(v)) return "nan";
    if (std::isinf(v)) return v > 0 ? "inf" : "-inf";
    return v;
}

MomentDistribution memberMoments(const MemberRow& row)
{
    return design::makeMoments(row.momentsY, diagramOf(row.diagramY), row.momentsZ, diagramOf(row.diagramZ), row.maxMoment,
                       loadPointOf(row.loadPoint), row.mcr.value_or(0.0));
}

RowResult rejected(std::size_t line, const std::string& id, const std::string& field, const std::string& message)
{
    RowResult r;
    r.line = line;
    r.id = id;
    r.rejected = true;
    r.errorField = field;
    r.errorMessage = message;
    return r;
}

// known: the row's section entry when the caller has looked it up already, else null.
RowResult evaluate(const BatchRow& parsed, SectionCache& sections, const SectionCache::Entry* known = nullptr)
{
    if (const auto* error = std::get_if<RowError>(&parsed))
        return rejected(error->line, error->id, error->field, error->message);
    const MemberRow& row = std::get<MemberRow>(parsed);
    const SectionCache::Entry& entry = known ? *known : sections.get(row.section);
    SDBSection* section = entry.section.get();
    if (!section) return rejected(row.line, row.id, "section", entry.error);
    auto steel = KaConstrSteel::fromName(row.steel);
    if (!steel) return rejected(row.line, row.id, "steel", "unknown steel grade '" + row.steel + "'");

    const Forces forces(row.N, row.My, row.Mz, row.Mt, row.Vy, row.Vz);
    const design::CrossSectionRequest cross{section, &*steel, forces, row.gammaM0.value_or(0.0), row.elastic};
    const design::BucklingLengths lengths = design::resolveLengths(
        row.length > 0.0 ? std::optional<double>(row.length) : std::nullopt, row.lengthY, row.lengthZ, row.lengthLT);
    const bool memberChecked = design::anyLength(lengths);
    design::MemberRequest member;
    if (memberChecked) {
        member.section = section;
        member.steel = &*steel;
        member.forces = forces;
        member.moments = memberMoments(row);
        member.lengths = lengths;
        member.gammaM1 = row.gammaM1.value_or(design::defaultGammaM1);
        member.cTheta = row.cTheta.value_or(0.0);
        member.shearPanel = row.shearPanel.value_or(0.0);
        member.method = !row.rolledMethod ? design::LateralTorsionalMethod::Automatic
                        : *row.rolledMethod ? design::LateralTorsionalMethod::Rolled
                                            : design::LateralTorsionalMethod::General;
        member.torsionallyDeformable = row.torsionallyDeformable;
        member.cmFloor = row.cmFloor;
        member.elastic = row.elastic;
    }
    RowResult r = evaluateChecks(cross, memberChecked ? &member : nullptr);
    r.line = row.line;
    r.id = row.id;
    return r;
}

} // namespace

RowResult evaluateChecks(const design::CrossSectionRequest& cross, const design::MemberRequest* member)
{
    RowResult r;
    static_cast<design::DesignSummary&>(r) = design::designMember(cross, member);
    return r;
}

namespace {

std::string csvField(const std::string& text)
{
    if (text.find_first_of(",\"\n") == std::string::npos) return text;
    std::string out = "\"";
    for (char c : text) out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
}

void appendCsvField(std::string& out, const std::string& text)
{
    if (text.find_first_of(",\"\n") == std::string::npos)
        out += text;
    else
        out += csvField(text);
}

// A utilization as printf's %.6g writes it ("0.873912", "1.2e-07", "inf", "-nan"): std::to_chars with the
// general format and a precision converts exactly as printf does, without its cost.
void appendNumber(std::string& out, double value)
{
    char buffer[40];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 6);
    out.append(buffer, result.ptr);
}

template <typename Integer>
void appendInteger(std::string& out, Integer value)
{
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

// One result row of the CSV output, with its line break; utilizationCount columns of utilizations.
void appendCsvRow(std::string& buffer, const RowResult& r, std::size_t utilizationCount)
{
    appendCsvField(buffer, r.id);
    buffer += ',';
    appendInteger(buffer, r.line);
    buffer += r.rejected ? ",rejected," : ",checked,";
    if (r.rejected) {
        // Empty section .. shearBucklingErrorCode (6), utilizations, governing .. departures (7).
        buffer.append(6 + utilizationCount + 7, ',');
        appendCsvField(buffer, r.errorField);
        buffer += ',';
        appendCsvField(buffer, r.errorMessage);
        buffer += '\n';
        return;
    }
    appendCsvField(buffer, r.section);
    buffer += ',';
    buffer += r.steel;
    for (int code : {r.sectionClass, r.errorCode, r.memberErrorCode, r.shearBucklingErrorCode}) {
        buffer += ',';
        appendInteger(buffer, code);
    }
    for (const auto& u : r.crossSection) {
        buffer += ',';
        if (u) appendNumber(buffer, u.value());
    }
    for (const auto& u : r.member) {
        buffer += ',';
        if (u) appendNumber(buffer, u.value());
    }
    buffer += ',';
    buffer += r.governing;
    buffer += ',';
    if (!r.governing.empty()) appendNumber(buffer, r.governingUtilization);
    buffer += r.fulfilled ? ",true," : ",false,";
    buffer += design::toString(r.verdict);
    buffer += ',';
    if (r.limitations != 0) appendCsvField(buffer, design::describeAll(r.limitations));
    buffer += ',';
    if (r.enGoverning) appendNumber(buffer, r.enGoverning.value());
    buffer += ',';
    if (r.departures != 0) buffer += design::departureNames(r.departures);
    buffer += ",,\n";
}

nlohmann::json jsonOfRow(const RowResult& r)
{
    nlohmann::json j;
    j["id"] = r.id;
    j["line"] = r.line;
    if (r.rejected) {
        j["status"] = "rejected";
        j["field"] = r.errorField;
        j["message"] = r.errorMessage;
        return j;
    }
    j["status"] = "checked";
    j["section"] = r.section;
    j["steel"] = r.steel;
    j["class"] = r.sectionClass;
    j["errorCode"] = r.errorCode;
    j["memberChecked"] = r.memberChecked;
    j["memberErrorCode"] = r.memberErrorCode;
    j["shearBucklingErrorCode"] = r.shearBucklingErrorCode;
    nlohmann::json u = nlohmann::json::object();
    const auto& names = utilizationNames();
    for (std::size_t i = 0; i < 7; ++i) u[names[i]] = utilizationJson(r.crossSection[i]);
    for (std::size_t i = 0; i < 4; ++i) u[names[7 + i]] = utilizationJson(r.member[i]);
    j["utilizations"] = u;
    j["governing"] = r.governing.empty() ? nlohmann::json(nullptr) : nlohmann::json(r.governing);
    j["governingUtilization"] =
        r.governing.empty() ? nlohmann::json(nullptr) : utilizationJson(kat::Nullable<double>(r.governingUtilization));
    j["fulfilled"] = r.fulfilled;
    j["verdict"] = design::toString(r.verdict);
    j["notVerified"] = r.limitations != 0 ? nlohmann::json(design::describeAll(r.limitations)) : nlohmann::json(nullptr);
    j["enUtilization"] = utilizationJson(r.enGoverning);
    j["departures"] = r.departures != 0 ? nlohmann::json(design::departureNames(r.departures)) : nlohmann::json(nullptr);
    j["lateralTorsionalMethod"] =
        r.memberChecked ? nlohmann::json(r.rolledMethod ? "6.3.2.3" : "6.3.2.2") : nlohmann::json(nullptr);
    return j;
}

} // namespace

nlohmann::json resultJson(const RowResult& r) { return jsonOfRow(r); }

namespace {
std::atomic<bool> stopRequested{false};
static_assert(std::atomic<bool>::is_always_lock_free);
} // namespace

void requestBatchStop() { stopRequested.store(true, std::memory_order_relaxed); }
void resetBatchStop() { stopRequested.store(false, std::memory_order_relaxed); }
bool batchStopRequested() { return stopRequested.load(std::memory_order_relaxed); }

RowResult evaluateRow(const BatchRow& row)
{
    SectionCache sections;
    return evaluate(row, sections);
}

std::vector<RowResult> runBatch(const std::vector<BatchRow>& rows, unsigned jobs, bool progress)
{
    std::vector<RowResult> results(rows.size());
    SectionCache sections;
    // Every row's section is looked up before the threads start, so that the workers need no lock.
    // A designation spelled as before is not normalised again.
    std::vector<const SectionCache::Entry*> sectionOf(rows.size(), nullptr);
    std::unordered_map<std::string, const SectionCache::Entry*> bySpelling;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto* member = std::get_if<MemberRow>(&rows[i]);
        if (!member) continue;
        auto [it, added] = bySpelling.try_emplace(member->section, nullptr);
        if (added) it->second = &sections.get(member->section);
        sectionOf[i] = it->second;
    }

    unsigned threads = jobs != 0 ? jobs : std::max(1u, std::thread::hardware_concurrency());
    threads = static_cast<unsigned>(std::min<std::size_t>(threads, std::max<std::size_t>(rows.size(), 1)));
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> done{0};
    constexpr std::size_t chunk = 64;
    auto worker = [&] {
        for (;;) {
            const std::size_t begin = next.fetch_add(chunk);
            if (begin >= rows.size()) return;
            const std::size_t end = std::min(rows.size(), begin + chunk);
            if (batchStopRequested()) return;
            for (std::size_t i = begin; i < end; ++i) {
                try {
                    results[i] = evaluate(rows[i], sections, sectionOf[i]);
                } catch (const std::exception& e) {
                    const auto* member = std::get_if<MemberRow>(&rows[i]);
                    results[i] = rejected(member ? member->line : 0, member ? member->id : std::string(), "",
                                          std::string("the row could not be evaluated: ") + e.what());
                }
            }
            done.fetch_add(end - begin);
        }
    };
    std::vector<std::thread> pool;
    for (unsigned t = 1; t < threads; ++t) pool.emplace_back(worker);
    std::thread reporter;
    std::atomic<bool> finished{false};
    if (progress && rows.size() > 0) {
        reporter = std::thread([&] {
            while (!finished.load()) {
                const std::size_t d = done.load();
                const int width = 40;
                const int filled = static_cast<int>(width * d / rows.size());
                std::fprintf(stderr, "\r[%s%s] %zu / %zu", std::string(filled, '#').c_str(),
                             std::string(width - filled, ' ').c_str(), d, rows.size());
                std::fflush(stderr);
                std::this_thread::sleep_for(std::chrono::milliseconds(100));
            }
            std::fprintf(stderr, "\r%*s\r", 60, "");
        });
    }
    worker();
    for (std::thread& t : pool) t.join();
    finished = true;
    if (reporter.joinable()) reporter.join();
    return results;
}

void writeResults(std::ostream& out, const std::vector<RowResult>& results, OutputFormat format)
{
    const auto& names = utilizationNames();
    if (format == OutputFormat::JsonLines) {
        for (const RowResult& r : results) out << jsonOfRow(r).dump() << '\n';
        return;
    }
    out << "id,line,status,section,steel,class,errorCode,memberErrorCode,shearBucklingErrorCode";
    for (const std::string& name : names) out << ',' << name;
    out << ",governing,governingUtilization,fulfilled,verdict,reason,enUtilization,departures,field,message\n";
    // The rows are formatted in chunks on every core, each chunk into a text of its own, and the texts
    // written in order.
    constexpr std::size_t chunk = 4096;
    std::vector<std::string> texts((results.size() + chunk - 1) / chunk);
    forEachChunk(results.size(), chunk, [&](std::size_t begin, std::size_t end) {
        std::string& text = texts[begin / chunk];
        text.reserve((end - begin) * 160);
        for (std::size_t i = begin; i < end; ++i) appendCsvRow(text, results[i], names.size());
    });
    for (const std::string& text : texts) out.write(text.data(), static_cast<std::streamsize>(text.size()));
}

std::string summarize(const std::vector<RowResult>& results)
{
    std::size_t fulfilled = 0, notFulfilled = 0, notVerified = 0, rejectedRows = 0;
    std::vector<const RowResult*> checked;
    for (const RowResult& r : results) {
        if (r.rejected) {
            ++rejectedRows;
            continue;
        }
        (r.verdict == design::Verdict::Fulfilled      ? fulfilled
         : r.verdict == design::Verdict::NotFulfilled ? notFulfilled
                                                      : notVerified)++;
        if (!r.governing.empty()) checked.push_back(&r);
    }
    const std::size_t top = std::min<std::size_t>(5, checked.size());
    std::partial_sort(checked.begin(), checked.begin() + top, checked.end(), [](const RowResult* a, const RowResult* b) {
        if (rank(a->governingUtilization) != rank(b->governingUtilization))
            return rank(a->governingUtilization) > rank(b->governingUtilization);
        return a->line < b->line;
    });
    std::string out = "rows " + std::to_string(results.size()) + ", fulfilled " + std::to_string(fulfilled) +
                      ", not fulfilled " + std::to_string(notFulfilled) + ", not verified " +
                      std::to_string(notVerified) + ", rejected " + std::to_string(rejectedRows) + "\n";
    if (top > 0) out += "highest utilizations:\n";
    for (std::size_t i = 0; i < top; ++i) {
        char line[256];
        std::snprintf(line, sizeof line, "  %-16s %8.3f  %s (%s)\n", checked[i]->id.c_str(),
                      checked[i]->governingUtilization, checked[i]->governing.c_str(), checked[i]->section.c_str());
        out += line;
    }
    std::size_t shown = 0;
    for (const RowResult& r : results) {
        if (r.rejected || r.verdict != design::Verdict::NotVerified) continue;
        if (++shown > 5) {
            out += "  ... " + std::to_string(notVerified - 5) + " more rows not verified\n";
            break;
        }
        out += "not verified: line " + std::to_string(r.line) + (r.id.empty() ? "" : " (" + r.id + ")") + ": " +
               design::describeAll(r.limitations) + "\n";
    }
    for (const RowResult& r : results)
        if (r.rejected)
            out += "rejected: line " + std::to_string(r.line) + (r.id.empty() ? "" : " (" + r.id + ")") +
                   (r.errorField.empty() ? "" : ", field " + r.errorField) + ": " + r.errorMessage + "\n";
    return out;
}

int exitCodeOf(const std::vector<RowResult>& results)
{
    bool anyNotFulfilled = false, anyNotVerified = false;
    for (const RowResult& r : results) {
        if (r.rejected) return 2;
        if (r.verdict == design::Verdict::NotFulfilled) anyNotFulfilled = true;
        if (r.verdict == design::Verdict::NotVerified) anyNotVerified = true;
    }
    return anyNotFulfilled ? 1 : anyNotVerified ? 3 : 0;
}

BatchFormat sniffFormat(std::istream& in)
{
    const auto start = in.tellg();
    char c = 0;
    BatchFormat format = BatchFormat::Csv;
    while (in.get(c)) {
        if (std::isspace(static_cast<unsigned char>(c))) continue;
        format = c == '{' ? BatchFormat::JsonLines : BatchFormat::Csv;
        break;
    }
    in.clear();
    in.seekg(start);
    return format;
}

} // namespace cli
