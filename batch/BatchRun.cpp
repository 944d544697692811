#include "BatchRun.h"
#include "NumberText.h"
#include "RowRequests.h"

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
#include <condition_variable>
#include <exception>
#include <span>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <istream>
#include <mutex>
#include <thread>
#include <unordered_map>

namespace batch {

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

// The steel grades, made once and shared read-only by the worker threads like the sections: a row names
// one of a handful, spelled as the grade ("S355") or in any case with blanks around it.
KaConstrSteel* steelOf(const std::string& name)
{
    static std::vector<KaConstrSteel> grades = [] {
        std::vector<KaConstrSteel> all;
        for (std::string_view grade : KaConstrSteel::gradeNames()) all.push_back(*KaConstrSteel::fromName(grade));
        return all;
    }();
    // The grade of the spelling met last on this thread: rows mostly name the same one.
    thread_local std::string lastName;
    thread_local KaConstrSteel* last = nullptr;
    if (last && name == lastName) return last;
    for (KaConstrSteel& grade : grades)
        if (grade.getName() == name) {
            lastName = name;
            return last = &grade;
        }
    const std::optional<KaConstrSteel> found = KaConstrSteel::fromName(name);
    if (!found) return nullptr;
    for (KaConstrSteel& grade : grades)
        if (grade.getName() == found->getName()) {
            lastName = name;
            return last = &grade;
        }
    return nullptr;
}

// known: the row's section entry when the caller has looked it up already, else null.
// The result goes into out, whose texts keep their memory from chunk to chunk: every field is set.
void evaluate(const BatchRow& parsed, SectionCache& sections, const SectionCache::Entry* known, RowResult& out,
              design::Rules rules)
{
    if (const auto* error = std::get_if<RowError>(&parsed)) {
        out = rejected(error->line, error->id, error->field, error->message);
        return;
    }
    const MemberRow& row = std::get<MemberRow>(parsed);
    const SectionCache::Entry& entry = known ? *known : sections.get(row.section);
    SDBSection* section = entry.section.get();
    if (!section) {
        out = rejected(row.line, row.id, "section", entry.error);
        return;
    }
    KaConstrSteel* steel = steelOf(row.steel);
    if (!steel) {
        out = rejected(row.line, row.id, "steel", "unknown steel grade '" + row.steel + "'");
        return;
    }

    const RowRequests requests = rowRequests(row, section, steel);
    design::designMember(requests.cross, requests.member ? &*requests.member : nullptr, out, nullptr, rules);
    out.line = row.line;
    out.id = row.id;
    out.rejected = false;
    out.errorField.clear();
    out.errorMessage.clear();
}

} // namespace

RowResult evaluateChecks(const design::CrossSectionRequest& cross, const design::MemberRequest* member,
                         design::Rules rules)
{
    RowResult r;
    static_cast<design::DesignSummary&>(r) = design::designMember(cross, member, nullptr, rules);
    return r;
}

namespace {

// Whether a CSV field needs quotes: it holds a comma, a quote or a line break.
bool needsQuotes(std::string_view text)
{
    for (const char c : text)
        if (c == ',' || c == '"' || c == '\n') return true;
    return false;
}

std::string csvField(const std::string& text)
{
    if (!needsQuotes(text)) return text;
    std::string out = "\"";
    for (char c : text) out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
}

void appendCsvField(std::string& out, const std::string& text)
{
    if (!needsQuotes(text))
        out += text;
    else
        out += csvField(text);
}


// The names of a row's departures and its reasons not verified (as a JSON string and as a CSV field):
// rows share a handful of combinations, so the texts of the combinations met are kept per thread (a few
// dozen at most) instead of being joined again.
template <typename Make>
const std::string& textOf(std::vector<std::pair<std::uint32_t, std::string>>& kept, std::uint32_t mask, Make make)
{
    for (const auto& [key, text] : kept)
        if (key == mask) return text;
    if (kept.size() >= 64) kept.clear();
    kept.emplace_back(mask, make(mask));
    return kept.back().second;
}

const std::string& departuresOf(std::uint32_t departures)
{
    thread_local std::vector<std::pair<std::uint32_t, std::string>> kept;
    return textOf(kept, departures, [](std::uint32_t mask) { return design::departureNames(mask); });
}

void appendJsonString(std::string& out, std::string_view text);  // below

const std::string& jsonReasonsOf(std::uint32_t limitations)
{
    thread_local std::vector<std::pair<std::uint32_t, std::string>> kept;
    return textOf(kept, limitations, [](std::uint32_t mask) {
        std::string text;
        appendJsonString(text, design::describeAll(mask));
        return text;
    });
}

const std::string& csvReasonsOf(std::uint32_t limitations)
{
    thread_local std::vector<std::pair<std::uint32_t, std::string>> kept;
    return textOf(kept, limitations, [](std::uint32_t mask) { return csvField(design::describeAll(mask)); });
}

template <typename Integer>
void appendInteger(std::string& out, Integer value)
{
    // Straight into out (see appendGeneral6).
    const std::size_t start = out.size();
    out.resize(start + 24);
    const auto result = std::to_chars(out.data() + start, out.data() + out.size(), value);
    out.resize(static_cast<std::size_t>(result.ptr - out.data()));
}

// One result row of the CSV output, with its line break; utilizationCount columns of utilizations.
void appendCsvRow(std::string& buffer, const RowResult& r, std::size_t utilizationCount)
{
    if (r.rejected) {
        appendCsvField(buffer, r.id);
        buffer += ',';
        appendInteger(buffer, r.line);
        buffer += ",rejected,";
        // Empty section .. shearBucklingErrorCode (6), utilizations, governing .. departures (7).
        buffer.append(6 + utilizationCount + 7, ',');
        appendCsvField(buffer, r.errorField);
        buffer += ',';
        appendCsvField(buffer, r.errorMessage);
        buffer += '\n';
        return;
    }
    // The row written straight in, the room for it made at once: its texts at their length (an id or a
    // section in quotes at most doubled), the numbers at their longest.
    static const std::string none;
    const std::string& reasons = r.limitations != 0 ? csvReasonsOf(r.limitations) : none;
    const std::string& departures = r.departures != 0 ? departuresOf(r.departures) : none;
    const std::string_view verdict = design::toString(r.verdict);
    const std::size_t room = 2 * (r.id.size() + r.section.size()) + 4 + r.steel.size() + r.governing.size() +
                             reasons.size() + departures.size() + verdict.size() + 24 + 4 * 12 +
                             (r.crossSection.size() + r.member.size() + 2) * (general6Length + 1) + 32;
    const std::size_t start = buffer.size();
    buffer.resize(start + room);
    char* t = buffer.data() + start;
    auto put = [&t](std::string_view text) {
        std::memcpy(t, text.data(), text.size());
        t += text.size();
    };
    auto putField = [&](const std::string& text) {  // as appendCsvField
        if (!needsQuotes(text)) return put(text);
        *t++ = '"';
        for (const char c : text) {
            if (c == '"') *t++ = '"';
            *t++ = c;
        }
        *t++ = '"';
    };
    putField(r.id);
    *t++ = ',';
    t = std::to_chars(t, t + 24, r.line).ptr;
    put(",checked,");
    putField(r.section);
    *t++ = ',';
    put(r.steel);
    for (int code : {r.sectionClass, r.errorCode, r.memberErrorCode, r.shearBucklingErrorCode}) {
        *t++ = ',';
        t = std::to_chars(t, t + 11, code).ptr;
    }
    for (const auto& u : r.crossSection) {
        *t++ = ',';
        if (u) t = writeGeneral6(t, u.value());
    }
    for (const auto& u : r.member) {
        *t++ = ',';
        if (u) t = writeGeneral6(t, u.value());
    }
    *t++ = ',';
    put(r.governing);
    *t++ = ',';
    if (!r.governing.empty()) t = writeGeneral6(t, r.governingUtilization);
    put(r.fulfilled ? ",true," : ",false,");
    put(verdict);
    *t++ = ',';
    put(reasons);
    *t++ = ',';
    const kat::Nullable<double>& other = r.rules == design::Rules::En ? r.libraryGoverning : r.enGoverning;
    if (other) t = writeGeneral6(t, other.value());
    *t++ = ',';
    put(departures);
    put(",,\n");
    buffer.resize(static_cast<std::size_t>(t - buffer.data()));
}

// --- JSON Lines, written directly: the same bytes as nlohmann::json's dump() of jsonOfRow (keys in
// its order, numbers by its own shortest round-trip conversion), without building a document per row.

void appendJsonString(std::string& out, std::string_view text)
{
    out += '"';
    std::size_t plain = 0;  // printable ASCII without quotes or backslashes goes as it is, at once
    while (plain < text.size()) {
        const auto c = static_cast<unsigned char>(text[plain]);
        if (c < 0x20 || c >= 0x80 || c == '"' || c == '\\') break;
        ++plain;
    }
    out.append(text.substr(0, plain));
    for (std::size_t i = plain; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\b': out += "\\b"; break;
        case '\f': out += "\\f"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20) {
                char buffer[8];
                std::snprintf(buffer, sizeof buffer, "\\u%04x", c);
                out += buffer;
            } else if (c < 0x80) {
                out += static_cast<char>(c);
            } else {
                // A UTF-8 sequence is copied as it is; a byte that does not start or continue one becomes
                // U+FFFD, so that the line stays valid JSON.
                const std::size_t length = c >= 0xF0 && c < 0xF5 ? 4 : c >= 0xE0 ? 3 : c >= 0xC2 && c < 0xE0 ? 2 : 0;
                bool valid = length != 0 && i + length <= text.size();
                for (std::size_t k = 1; valid && k < length; ++k)
                    valid = (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80;
                if (valid) {
                    out.append(text.substr(i, length));
                    i += length - 1;
                } else {
                    out += "\xEF\xBF\xBD";
                }
            }
        }
    }
    out += '"';
}

void appendJsonNumber(std::string& out, double value)
{
    // Straight into out (see appendGeneral6).
    const std::size_t start = out.size();
    out.resize(start + 40);
    char* const end = nlohmann::detail::to_chars(out.data() + start, out.data() + out.size(), value);
    out.resize(static_cast<std::size_t>(end - out.data()));
}

// A utilization: a number, "inf", "-inf", "nan" (JSON has none of them), or null when absent.
void appendJsonUtilization(std::string& out, const kat::Nullable<double>& u)
{
    if (!u.hasValue()) {
        out += "null";
        return;
    }
    const double v = u.value();
    if (std::isnan(v)) out += "\"nan\"";
    else if (std::isinf(v)) out += v > 0 ? "\"inf\"" : "\"-inf\"";
    else appendJsonNumber(out, v);
}

// The most characters writeJsonUtilization writes: a number of nlohmann::json's conversion
// ("-1.2345678901234567e-308") or "\"-inf\"".
constexpr std::size_t jsonNumberLength = 32;

// appendJsonUtilization at t, which has room for jsonNumberLength characters; returns the end.
char* writeJsonUtilization(char* t, const kat::Nullable<double>& u)
{
    auto word = [&](std::string_view text) {
        std::memcpy(t, text.data(), text.size());
        return t + text.size();
    };
    if (!u.hasValue()) return word("null");
    const double v = u.value();
    if (std::isnan(v)) return word("\"nan\"");
    if (std::isinf(v)) return word(v > 0 ? "\"inf\"" : "\"-inf\"");
    return nlohmann::detail::to_chars(t, t + jsonNumberLength, v);
}

void appendJsonRow(std::string& out, const RowResult& r)
{
    if (r.rejected) {
        out += "{\"field\":";
        appendJsonString(out, r.errorField);
        out += ",\"id\":";
        appendJsonString(out, r.id);
        out += ",\"line\":";
        appendInteger(out, r.line);
        out += ",\"message\":";
        appendJsonString(out, r.errorMessage);
        out += ",\"status\":\"rejected\"}\n";
        return;
    }
    out += "{\"class\":";
    appendInteger(out, r.sectionClass);
    out += ",\"departures\":";
    if (r.departures != 0) appendJsonString(out, departuresOf(r.departures));
    else out += "null";
    if (r.rules == design::Rules::Library) {
        out += ",\"enUtilization\":";
        appendJsonUtilization(out, r.enGoverning);
    }
    out += ",\"errorCode\":";
    appendInteger(out, r.errorCode);
    out += r.fulfilled ? ",\"fulfilled\":true" : ",\"fulfilled\":false";
    out += ",\"governing\":";
    if (r.governing.empty()) out += "null";
    else appendJsonString(out, r.governing);
    out += ",\"governingUtilization\":";
    if (r.governing.empty()) out += "null";
    else appendJsonUtilization(out, kat::Nullable<double>(r.governingUtilization));
    out += ",\"id\":";
    appendJsonString(out, r.id);
    out += ",\"lateralTorsionalMethod\":";
    out += r.memberChecked ? (r.rolledMethod ? "\"6.3.2.3\"" : "\"6.3.2.2\"") : "null";
    if (r.rules == design::Rules::En) {
        out += ",\"libraryUtilization\":";
        appendJsonUtilization(out, r.libraryGoverning);
    }
    out += ",\"line\":";
    appendInteger(out, r.line);
    out += r.memberChecked ? ",\"memberChecked\":true" : ",\"memberChecked\":false";
    out += ",\"memberErrorCode\":";
    appendInteger(out, r.memberErrorCode);
    out += ",\"notVerified\":";
    if (r.limitations != 0) out += jsonReasonsOf(r.limitations);
    else out += "null";
    out += ",\"section\":";
    appendJsonString(out, r.section);
    out += ",\"shearBucklingErrorCode\":";
    appendInteger(out, r.shearBucklingErrorCode);
    out += ",\"status\":\"checked\",\"steel\":";
    appendJsonString(out, r.steel);
    // utilizationNames in the order of a JSON object's keys (byte order): the cross-section ones first.
    static constexpr std::pair<const char*, int> keys[] = {
        {"Axial", 0},         {"AxialBending", 4},      {"AxialShearBending", 6},        {"Bending", 2},
        {"Shear", 3},         {"ShearBending", 5},      {"Torsion", 1},                  {"memberBending", 8},
        {"memberCompression", 7}, {"memberCompressionBending", 9}, {"memberShearBuckling", 10}};
    out += ",\"utilizations\":{";
    // Written straight in, the room for the keys and the values made at once.
    std::size_t room = 0;
    for (const auto& [key, index] : keys) room += std::char_traits<char>::length(key) + 4 + jsonNumberLength;
    const std::size_t start = out.size();
    out.resize(start + room);
    char* t = out.data() + start;
    bool first = true;
    for (const auto& [key, index] : keys) {
        if (!first) *t++ = ',';
        first = false;
        *t++ = '"';
        const std::size_t length = std::char_traits<char>::length(key);
        std::memcpy(t, key, length);
        t += length;
        *t++ = '"';
        *t++ = ':';
        t = writeJsonUtilization(t, index < 7 ? r.crossSection[static_cast<std::size_t>(index)]
                                              : r.member[static_cast<std::size_t>(index - 7)]);
    }
    out.resize(static_cast<std::size_t>(t - out.data()));
    out += "},\"verdict\":";
    appendJsonString(out, design::toString(r.verdict));
    out += "}\n";
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
    if (r.rules == design::Rules::En) j["libraryUtilization"] = utilizationJson(r.libraryGoverning);
    else j["enUtilization"] = utilizationJson(r.enGoverning);
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

RowResult evaluateRow(const BatchRow& row, design::Rules rules)
{
    SectionCache sections;
    RowResult result;
    evaluate(row, sections, nullptr, result, rules);
    return result;
}

struct BatchEvaluator::Impl {
    unsigned jobs = 0;
    design::Rules rules = design::Rules::Library;
    SectionCache sections;
    // A designation spelled as before is not normalised again.
    std::unordered_map<std::string, const SectionCache::Entry*> bySpelling;
    std::vector<const SectionCache::Entry*> sectionOf;  // per row of the chunk, reused
};

BatchEvaluator::BatchEvaluator(unsigned jobs, design::Rules rules) : impl_(std::make_unique<Impl>())
{
    impl_->jobs = jobs;
    impl_->rules = rules;
}

BatchEvaluator::~BatchEvaluator() = default;

void BatchEvaluator::run(const std::vector<BatchRow>& rows, std::vector<RowResult>& results, bool progress)
{
    // The results of the former chunk stay and are evaluated over (their texts keep their memory).
    results.resize(rows.size());
    SectionCache& sections = impl_->sections;
    // Every row's section is looked up before the threads start, so that the workers need no lock.
    std::vector<const SectionCache::Entry*>& sectionOf = impl_->sectionOf;
    sectionOf.assign(rows.size(), nullptr);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto* member = std::get_if<MemberRow>(&rows[i]);
        if (!member) continue;
        // Neighbouring rows mostly name the same section.
        if (i > 0 && sectionOf[i - 1]) {
            const auto* previous = std::get_if<MemberRow>(&rows[i - 1]);
            if (previous->section == member->section) {
                sectionOf[i] = sectionOf[i - 1];
                continue;
            }
        }
        auto [it, added] = impl_->bySpelling.try_emplace(member->section, nullptr);
        if (added) it->second = &sections.get(member->section);
        sectionOf[i] = it->second;
    }

    const unsigned jobs = impl_->jobs;
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
                    evaluate(rows[i], sections, sectionOf[i], results[i], impl_->rules);
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
}

std::vector<RowResult> runBatch(const std::vector<BatchRow>& rows, unsigned jobs, bool progress, design::Rules rules)
{
    std::vector<RowResult> results;
    BatchEvaluator(jobs, rules).run(rows, results, progress);
    return results;
}

void writeHeader(std::ostream& out, OutputFormat format, design::Rules rules)
{
    if (format == OutputFormat::JsonLines) return;
    out << "id,line,status,section,steel,class,errorCode,memberErrorCode,shearBucklingErrorCode";
    for (const std::string& name : utilizationNames()) out << ',' << name;
    out << ",governing,governingUtilization,fulfilled,verdict,reason,"
        << (rules == design::Rules::En ? "libraryUtilization" : "enUtilization") << ",departures,field,message\n";
}

void writeRows(std::ostream& out, const std::vector<RowResult>& results, OutputFormat format, unsigned jobs)
{
    const auto& names = utilizationNames();
    // The rows are formatted in chunks on every core, each chunk into a text of its own, and the texts
    // written in order.
    constexpr std::size_t chunk = 4096;
    // The texts keep their memory from call to call (per calling thread): fresh megabytes for every
    // chunk cost a page fault per page, and two threads faulting contend in the kernel.
    thread_local std::vector<std::string> kept;
    std::vector<std::string>& texts = kept;  // the workers reach the caller's texts, not their own
    const std::size_t count = (results.size() + chunk - 1) / chunk;
    if (texts.size() < count) texts.resize(count);
    // One thread formats the whole range into the first text: the others must not keep a former chunk.
    for (std::size_t i = 0; i < count; ++i) texts[i].clear();
    forEachChunk(results.size(), chunk, jobs, [&](std::size_t begin, std::size_t end) {
        // A string of the worker's own, its memory borrowed from the kept text: the headers of the
        // kept texts share a cache line, and two threads appending to them would pass it to and fro.
        std::string text;
        text.swap(texts[begin / chunk]);
        text.clear();
        text.reserve((end - begin) * (format == OutputFormat::JsonLines ? 640 : 256));
        for (std::size_t i = begin; i < end; ++i) {
            if (format == OutputFormat::JsonLines) appendJsonRow(text, results[i]);
            else appendCsvRow(text, results[i], names.size());
        }
        text.swap(texts[begin / chunk]);
    });
    for (std::size_t i = 0; i < count; ++i) out.write(texts[i].data(), static_cast<std::streamsize>(texts[i].size()));
}

namespace {

// One slice of the pipeline's ring: its lines, rows, results and output text, all reused from turn to turn.
struct PipelineSlice {
    BatchReader::Lines lines;
    std::vector<BatchRow> rows;
    std::vector<RowResult> results;
    std::string text;
    std::size_t count = 0;
};

// Rows per slice: a worker parses, evaluates and formats a slice at a time, into the slice's own text.
constexpr std::size_t sliceRows = 128;
// Bytes of lines per slice, and in all the slices in flight, at most (a slice holds one line at least, and a
// line is at most maxLineBytes): rows of a few hundred bytes never reach them.
constexpr std::size_t maxSliceBytes = std::size_t{4} << 20;
constexpr std::size_t maxBytesInFlight = std::size_t{64} << 20;

// The ring's hand-over between the reader, the workers and the writer. Slice k of the run lives in slot
// k % size; the reader fills slot k once the writer has written slice k - size, a worker takes slice k once
// it is read, the writer writes slice k once it and every slice before it are evaluated. The writer takes
// the evaluated slices a batch at a time and frees their slots together, so that the reader and the writer
// wake once a batch, not once a slice. The counters only grow.
class PipelineRing {
public:
    explicit PipelineRing(std::size_t size)
        : states_(size, 0), bytes_(size, 0), batch_(std::max<std::size_t>(1, size / 4))
    {
    }
    std::size_t size() const { return states_.size(); }

    // Reader: waits until slot k is free; false when the run stops.
    // The lines of the slices read and not yet written stay within maxBytesInFlight (one slice more at
    // most), so that memory is bounded by bytes as well as by rows.
    bool waitFree(std::size_t k)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        return waitFor(lock, free_, [&] { return k < written_ + states_.size() && inFlight_ <= maxBytesInFlight; });
    }
    // Reader: slice k is read (any, bytes of lines), or the input ended before it.
    void read(std::size_t k, bool any, std::size_t bytes)
    {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            if (any) {
                read_ = k + 1;
                bytes_[k % bytes_.size()] = bytes;
                inFlight_ += bytes;
            } else {
                end_ = k;
            }
        }
        readable_.notify_all();
        if (!any) writable_.notify_one();  // the writer may wait for a batch that the end cuts short
    }
    // Worker: the next slice to evaluate, once read; false at the end of the input or when the run stops.
    bool take(std::size_t& k)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        k = next_++;
        return waitFor(lock, readable_, [&] { return k < read_ || k >= end_; }) && k < read_;
    }
    // Worker: slice k is evaluated and formatted.
    void evaluated(std::size_t k)
    {
        bool wake = false;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            states_[k % states_.size()] = k + 1;
            while (contiguous_ < read_ && states_[contiguous_ % states_.size()] == contiguous_ + 1) ++contiguous_;
            wake = writerReady();
        }
        if (wake) writable_.notify_one();
    }
    // Writer: waits until slices k, k + 1, ... are evaluated, a batch of them or all up to the end; their
    // count, 0 at the end of the input or when the run stops.
    std::size_t waitEvaluated(std::size_t k)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        writerAt_ = k;
        if (!waitFor(lock, writable_, [&] { return writerReady() || k >= end_; })) return 0;
        return contiguous_ - k;
    }
    // Writer: the slices before k are written; their slots are free again.
    void written(std::size_t k)
    {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            for (std::size_t j = written_; j < k; ++j) inFlight_ -= bytes_[j % bytes_.size()];
            written_ = k;
        }
        free_.notify_one();
    }
    // Ends the run early (a stop request, or the reader failed): every waiting thread returns.
    void abort()
    {
        {
            std::lock_guard<std::mutex> lock(mutex_);
            aborted_ = true;
        }
        free_.notify_all();
        readable_.notify_all();
        writable_.notify_all();
    }

private:
    // A batch is evaluated from the writer's place, or every slice up to the end is, or the reader waits for
    // the bytes in flight to be written.
    bool writerReady() const
    {
        return contiguous_ > writerAt_ &&
               (contiguous_ - writerAt_ >= batch_ || contiguous_ == end_ || inFlight_ > maxBytesInFlight);
    }
    // Waits for ready, looking at the stop request now and then (a signal handler cannot notify).
    template <class Ready>
    bool waitFor(std::unique_lock<std::mutex>& lock, std::condition_variable& cv, Ready ready)
    {
        while (!ready()) {
            if (aborted_ || batchStopRequested()) return false;
            cv.wait_for(lock, std::chrono::milliseconds(50));
        }
        return !aborted_ && !batchStopRequested();
    }

    std::mutex mutex_;
    std::condition_variable free_, readable_, writable_;
    std::vector<std::size_t> states_;  // per slot: 1 + the slice evaluated in it
    std::vector<std::size_t> bytes_;   // per slot: the bytes of its lines
    std::size_t inFlight_ = 0;         // the bytes of the slices read and not written
    const std::size_t batch_;
    std::size_t read_ = 0, written_ = 0, next_ = 0, contiguous_ = 0, writerAt_ = 0;
    std::size_t end_ = std::numeric_limits<std::size_t>::max();
    bool aborted_ = false;
};

} // namespace

void runPipeline(BatchReader& reader, std::ostream& out, OutputFormat format, unsigned jobs, std::size_t chunkRows,
                 BatchSummary& summary, const std::function<void(std::size_t rowsDone)>& onChunk, design::Rules rules)
{
    const std::size_t utilizationCount = utilizationNames().size();
    const unsigned cores = jobs != 0 ? jobs : std::max(1u, std::thread::hardware_concurrency());
    // Sections by spelling, shared by the workers under a lock; each worker keeps the few it met last.
    SectionCache sections;
    std::mutex sectionsMutex;
    std::unordered_map<std::string, const SectionCache::Entry*> bySpelling;
    auto lookUp = [&](const std::string& spelling) {
        std::lock_guard<std::mutex> lock(sectionsMutex);
        auto [it, added] = bySpelling.try_emplace(spelling, nullptr);
        if (added) it->second = &sections.get(spelling);
        return it->second;
    };

    // chunkRows rows in flight at most, in slices of up to sliceRows rows.
    const std::size_t rowsPerSlice = std::clamp<std::size_t>(chunkRows, 1, sliceRows);
    PipelineRing ring(std::max<std::size_t>(2, (chunkRows + rowsPerSlice - 1) / rowsPerSlice));
    std::vector<PipelineSlice> slots(ring.size());

    std::exception_ptr readFailure;
    std::thread readerThread([&] {
        try {
            for (std::size_t k = 0;; ++k) {
                if (!ring.waitFree(k)) return;
                PipelineSlice& slice = slots[k % slots.size()];
                const bool any = reader.readLines(slice.lines, rowsPerSlice, maxSliceBytes);
                ring.read(k, any, slice.lines.bytes);
                if (!any) return;
            }
        } catch (...) {
            readFailure = std::current_exception();
            ring.abort();
        }
    });

    auto worker = [&] {
        // The sections this worker met last, by spelling: neighbouring rows name a handful.
        std::vector<std::pair<std::string, const SectionCache::Entry*>> known;
        std::size_t k = 0;
        while (ring.take(k)) {
            PipelineSlice& slice = slots[k % slots.size()];
            const std::size_t count = slice.lines.count;
            slice.count = count;
            if (slice.rows.size() < count) slice.rows.resize(count);
            if (slice.results.size() < count) slice.results.resize(count);
            std::string& text = slice.text;
            text.clear();
            text.reserve(count * (format == OutputFormat::JsonLines ? 640 : 256));
            for (std::size_t i = 0; i < count; ++i) {
                BatchRow& row = slice.rows[i];
                RowResult& result = slice.results[i];
                try {
                    reader.parseLine(slice.lines, i, row);
                    const SectionCache::Entry* entry = nullptr;
                    if (const auto* member = std::get_if<MemberRow>(&row)) {
                        for (const auto& [spelling, e] : known)
                            if (spelling == member->section) {
                                entry = e;
                                break;
                            }
                        if (!entry) {
                            entry = lookUp(member->section);
                            if (known.size() >= 16) known.erase(known.begin());
                            known.emplace_back(member->section, entry);
                        }
                    }
                    evaluate(row, sections, entry, result, rules);
                } catch (const std::exception& e) {
                    const auto* member = std::get_if<MemberRow>(&row);
                    result = rejected(member ? member->line : 0, member ? member->id : std::string(), "",
                                      std::string("the row could not be evaluated: ") + e.what());
                }
                if (format == OutputFormat::JsonLines) appendJsonRow(text, result);
                else appendCsvRow(text, result, utilizationCount);
            }
            ring.evaluated(k);
        }
    };

    // The writer writes the slices in input order and counts them in the summary. A malformed row stops
    // the run before anything of its slice is written.
    std::exception_ptr writeFailure;
    std::thread writerThread([&] {
        std::size_t rows = 0, reported = 0, k = 0;
        while (const std::size_t ready = ring.waitEvaluated(k)) {
            for (const std::size_t last = k + ready; k < last; ++k) {
                PipelineSlice& slice = slots[k % slots.size()];
                try {
                    for (std::size_t i = 0; i < slice.count; ++i) stopOnFatal(slice.rows[i]);
                } catch (...) {
                    writeFailure = std::current_exception();
                    ring.abort();
                    return;
                }
                out.write(slice.text.data(), static_cast<std::streamsize>(slice.text.size()));
                // Long lines give their memory back once written: the slot may wait long for its next turn.
                for (std::size_t i = 0; i < slice.count; ++i)
                    if (slice.lines.text[i].capacity() > 65536) std::string().swap(slice.lines.text[i]);
                summary.add(std::span<const RowResult>(slice.results.data(), slice.count));
                rows += slice.count;
            }
            ring.written(k);
            if (onChunk && rows - reported >= chunkRows) onChunk(reported = rows);
        }
        if (onChunk && rows != reported) onChunk(rows);
    });

    std::vector<std::thread> pool;
    for (unsigned t = 1; t < cores; ++t) pool.emplace_back(worker);
    worker();
    for (std::thread& t : pool) t.join();
    writerThread.join();
    ring.abort();  // the reader may wait for a slot the stopped writer never frees
    readerThread.join();
    if (readFailure) std::rethrow_exception(readFailure);
    if (writeFailure) std::rethrow_exception(writeFailure);
}

void writeResults(std::ostream& out, const std::vector<RowResult>& results, OutputFormat format, design::Rules rules)
{
    writeHeader(out, format, rules);
    writeRows(out, results, format, 0);
}

void BatchSummary::add(const std::vector<RowResult>& results) { add(std::span<const RowResult>(results)); }

void BatchSummary::add(std::span<const RowResult> results)
{
    for (const RowResult& r : results) {
        ++rows_;
        if (r.rejected) {
            ++rejected_;
            if (rejectedLines_.size() < listedRows)
                rejectedLines_.push_back("rejected: line " + std::to_string(r.line) + (r.id.empty() ? "" : " (" + r.id + ")") +
                                         (r.errorField.empty() ? "" : ", field " + r.errorField) + ": " + r.errorMessage +
                                         "\n");
            continue;
        }
        switch (r.verdict) {
        case design::Verdict::Fulfilled: ++fulfilled_; break;
        case design::Verdict::NotFulfilled: ++notFulfilled_; break;
        case design::Verdict::NotVerified:
            ++notVerified_;
            if (notVerifiedLines_.size() < 5)
                notVerifiedLines_.push_back("not verified: line " + std::to_string(r.line) +
                                            (r.id.empty() ? "" : " (" + r.id + ")") + ": " +
                                            design::describeAll(r.limitations) + "\n");
            break;
        }
        if (r.governing.empty()) continue;
        // The five highest, by utilization (not a number first), then by line.
        // The texts are copied only for a row that enters the five.
        const double entryRank = rank(r.governingUtilization);
        auto before = [](const Top& a, const Top& b) { return a.rank != b.rank ? a.rank > b.rank : a.line < b.line; };
        if (top_.size() == 5) {
            const Top& last = top_.back();
            if (!(entryRank != last.rank ? entryRank > last.rank : r.line < last.line)) continue;
        }
        const Top entry{entryRank, r.governingUtilization, r.line, r.id, r.governing, r.section};
        top_.insert(std::upper_bound(top_.begin(), top_.end(), entry, before), entry);
        if (top_.size() > 5) top_.pop_back();
    }
}

std::string BatchSummary::text() const
{
    std::string out = "rows " + std::to_string(rows_) + ", fulfilled " + std::to_string(fulfilled_) +
                      ", not fulfilled " + std::to_string(notFulfilled_) + ", not verified " +
                      std::to_string(notVerified_) + ", rejected " + std::to_string(rejected_) + "\n";
    if (!top_.empty()) out += "highest utilizations:\n";
    for (const Top& t : top_) {
        char line[256];
        std::snprintf(line, sizeof line, "  %-16s %8.3f  %s (%s)\n", t.id.c_str(), t.utilization, t.governing.c_str(),
                      t.section.c_str());
        out += line;
    }
    for (const std::string& line : notVerifiedLines_) out += line;
    if (notVerified_ > notVerifiedLines_.size())
        out += "  ... " + std::to_string(notVerified_ - notVerifiedLines_.size()) + " more rows not verified\n";
    for (const std::string& line : rejectedLines_) out += line;
    if (rejected_ > rejectedLines_.size())
        out += "  ... " + std::to_string(rejected_ - rejectedLines_.size()) + " more rows rejected\n";
    return out;
}

int BatchSummary::exitCode() const
{
    if (rejected_ > 0) return 2;
    if (notFulfilled_ > 0) return 1;
    return notVerified_ > 0 ? 3 : 0;
}

std::string summarize(const std::vector<RowResult>& results)
{
    BatchSummary summary;
    summary.add(results);
    return summary.text();
}

int exitCodeOf(const std::vector<RowResult>& results)
{
    BatchSummary summary;
    summary.add(results);
    return summary.exitCode();
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

} // namespace batch
