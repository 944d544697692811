// The batch subcommand under the library's rules: every row checked or rejected, results in input order
// whatever the threads.

#include "CommandRunner.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

const std::string example = std::string(STEELDESIGN_SOURCE_DIR) + "/examples/frames.csv";
const std::string exampleJsonl = std::string(STEELDESIGN_SOURCE_DIR) + "/examples/frames.jsonl";

// A file in the test's temporary directory with the given content; removed with the object.
class TempFile {
public:
    TempFile(const std::string& name, const std::string& content)
        : path_(::testing::TempDir() + "steeldesign_" + std::to_string(getpid()) + "_" + name)
    {
        std::ofstream(path_) << content;
    }
    ~TempFile() { std::remove(path_.c_str()); }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

std::vector<nlohmann::json> jsonLines(const std::string& text)
{
    std::vector<nlohmann::json> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        if (!line.empty()) lines.push_back(nlohmann::json::parse(line));
    return lines;
}

std::vector<std::string> splitLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

} // namespace

TEST(BatchCommand, OutputIsTheSameOnOneAndTwoThreads)
{
    for (const char* format : {"jsonl", "csv"}) {
        const CommandRun one = runSteeldesign("batch --rules library " + example + " --jobs 1 --format " + std::string(format), false);
        const CommandRun two = runSteeldesign("batch --rules library " + example + " --jobs 2 --format " + std::string(format), false);
        EXPECT_EQ(one.exitCode, two.exitCode);
        EXPECT_FALSE(one.output.empty());
        EXPECT_EQ(one.output, two.output) << format;  // byte-identical
    }
}

TEST(BatchCommand, CsvAndJsonLinesInputGiveTheSameResults)
{
    const auto csv = jsonLines(runSteeldesign("batch --rules library " + example, false).output);
    const auto jsonl = jsonLines(runSteeldesign("batch --rules library " + exampleJsonl, false).output);
    ASSERT_EQ(csv.size(), jsonl.size());
    ASSERT_GT(csv.size(), 30u);
    for (std::size_t i = 0; i < csv.size(); ++i) {
        EXPECT_EQ(csv[i]["id"], jsonl[i]["id"]);
        EXPECT_EQ(csv[i]["utilizations"], jsonl[i]["utilizations"]) << csv[i]["id"];
        EXPECT_EQ(csv[i]["line"].get<int>(), jsonl[i]["line"].get<int>() + 1);  // the CSV header is line 1
    }
}

TEST(BatchCommand, RowsEqualTheCheckCommand)
{
    const auto rows = jsonLines(runSteeldesign("batch --rules library " + example, false).output);
    for (const auto& row : rows) {
        if (row["id"].get<std::string>().find("LC1") == std::string::npos) continue;  // one load case is enough
        std::ifstream in(example);
        std::string line;
        for (int i = 0; i < row["line"].get<int>(); ++i) std::getline(in, line);
        // Columns: id,section,steel,N,My,Mz,Mt,Vy,Vz,...
        std::vector<std::string> f;
        std::stringstream ss(line);
        for (std::string cell; std::getline(ss, cell, ',');) f.push_back(cell);
        const std::string args = "check --rules library \"" + f[1] + "\" --steel " + f[2] + " --N " + f[3] + " --My " + f[4] +
                                 " --Mz " + f[5] + " --Mt " + f[6] + " --Vy " + f[7] + " --Vz " + f[8] + " --json";
        const auto check = nlohmann::json::parse(runSteeldesign(args, false).output);
        for (const char* name : {"Axial", "Torsion", "Bending", "Shear", "AxialBending", "ShearBending", "AxialShearBending"})
            EXPECT_EQ(row["utilizations"][name], check["utilizations"][name]) << row["id"] << ' ' << name;
        EXPECT_EQ(row["class"], check["class"]) << row["id"];
    }
}

TEST(BatchCommand, BadRowsAreRejectedWithLineAndFieldAndTheOthersChecked)
{
    const TempFile input("bad.csv",
                         "id,section,steel,N,My,Mz,Mt,Vy,Vz,length\n"
                         "ok1,IPE 300,S355,0,50,0,0,0,30,4\n"
                         "badSection,IPE 301,S355,-100,50,0,0,0,30,4\n"
                         "badSteel,IPE 300,S999,-100,50,0,0,0,30,4\n"
                         "badNumber,IPE 300,S355,-1OO,50,0,0,0,30,4\n"
                         "missing,IPE 300,S355,,50,0,0,0,30,4\n"
                         "infinite,IPE 300,S355,-100,inf,0,0,0,30,4\n"
                         "\n"
                         "short,IPE 300,S355\n"
                         "ok2,HEB 200,S235,-500,0,0,0,0,0,4\n");
    const CommandRun r = runSteeldesign("batch --rules library " + input.path(), false);
    EXPECT_EQ(r.exitCode, 2);
    const auto rows = jsonLines(r.output);
    ASSERT_EQ(rows.size(), 8u);
    struct Expected {
        const char* id;
        int line;
        const char* status;
        const char* field;
    };
    const Expected expected[] = {{"ok1", 2, "checked", ""},         {"badSection", 3, "rejected", "section"},
                                 {"badSteel", 4, "rejected", "steel"}, {"badNumber", 5, "rejected", "N"},
                                 {"missing", 6, "rejected", "N"},      {"infinite", 7, "rejected", "My"},
                                 {"short", 9, "rejected", ""},         {"ok2", 10, "checked", ""}};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i]["id"], expected[i].id);
        EXPECT_EQ(rows[i]["line"], expected[i].line) << expected[i].id;
        EXPECT_EQ(rows[i]["status"], expected[i].status) << expected[i].id;
        if (std::string(expected[i].status) == "rejected") {
            EXPECT_EQ(rows[i]["field"], expected[i].field) << expected[i].id;
            EXPECT_FALSE(rows[i]["message"].get<std::string>().empty());
        }
    }
    // The summary names the rejected lines and their fields.
    const CommandRun all = runSteeldesign("batch --rules library " + input.path());
    EXPECT_NE(all.output.find("rejected: line 3 (badSection), field section"), std::string::npos) << all.output;
    EXPECT_NE(all.output.find("rows 8, fulfilled 2, not fulfilled 0, not verified 0, rejected 6"), std::string::npos) << all.output;
}

TEST(BatchCommand, CsvOutputHasTheSameColumnsOnEveryRow)
{
    const TempFile input("mixed.csv",
                         "id,section,steel,N,My,Mz,Mt,Vy,Vz,length\n"
                         "a,IPE 300,S355,-100,50,0,0,0,30,4\n"
                         "b,IPE 999,S355,-100,50,0,0,0,30,4\n");
    const auto lines = splitLines(runSteeldesign("batch --rules library " + input.path() + " --format csv", false).output);
    ASSERT_EQ(lines.size(), 3u);
    // Fields outside quotes: a message may hold commas, quoted.
    auto columns = [](const std::string& line) {
        std::size_t n = 1;
        bool quoted = false;
        for (char c : line) {
            if (c == '"') quoted = !quoted;
            if (c == ',' && !quoted) ++n;
        }
        return n;
    };
    EXPECT_EQ(columns(lines[1]), columns(lines[0]));
    EXPECT_EQ(columns(lines[2]), columns(lines[0])) << lines[2];
}

TEST(BatchCommand, FileLevelErrorsWriteNothing)
{
    const TempFile noColumn("nocolumn.csv", "id,section,steel,N,My,Mz,Mt,Vy,length\na,IPE 300,S355,0,1,0,0,0,1\n");
    const CommandRun r = runSteeldesign("batch --rules library " + noColumn.path());
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.output.find("'Vz'"), std::string::npos) << r.output;

    const CommandRun missing = runSteeldesign("batch --rules library /nonexistent/input.csv");
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_NE(missing.output.find("/nonexistent/input.csv"), std::string::npos);

    const CommandRun badOut = runSteeldesign("batch --rules library " + example + " --out /nonexistent/dir/out.jsonl");
    EXPECT_EQ(badOut.exitCode, 2);
    EXPECT_NE(badOut.output.find("--out"), std::string::npos);
}

TEST(BatchCommand, OutFileAndExitCodeOfTheExample)
{
    const std::string out = ::testing::TempDir() + "steeldesign_out_" + std::to_string(getpid()) + ".jsonl";
    const CommandRun r = runSteeldesign("batch --rules library " + example + " --out " + out);
    EXPECT_EQ(r.exitCode, 1);  // the example holds a lintel that is too light
    EXPECT_NE(r.output.find("highest utilizations"), std::string::npos);
    std::ifstream in(out);
    std::stringstream content;
    content << in.rdbuf();
    const auto rows = jsonLines(content.str());
    EXPECT_EQ(rows.size(), 51u);
    int notFulfilled = 0, notVerified = 0;
    for (const auto& row : rows) {
        notFulfilled += row["verdict"] == "not fulfilled" ? 1 : 0;
        notVerified += row["verdict"] == "not verified" ? 1 : 0;
        EXPECT_EQ(row["fulfilled"], row["verdict"] == "fulfilled") << row["id"];
        EXPECT_EQ(row["notVerified"].is_null(), row["verdict"] != "not verified") << row["id"];
    }
    EXPECT_EQ(notFulfilled, 2);
    // The uplift load cases put the rafters and columns in tension with bending, which the member check
    // does not cover.
    EXPECT_EQ(notVerified, 12);
    std::remove(out.c_str());
}

TEST(BatchCommand, RowsEqualTheMemberCommand)
{
    const auto rows = jsonLines(runSteeldesign("batch --rules library " + example, false).output);
    std::ifstream in(example);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    // Columns: id,section,steel,N,My,Mz,Mt,Vy,Vz,length,MyStart,MyMid,MyEnd,diagramY,loadPoint,rolledMethod,cmFloor,
    // lengthY,lengthZ,lengthLT
    int compared = 0;
    for (const auto& row : rows) {
        std::vector<std::string> f;
        std::stringstream ss(lines[row["line"].get<std::size_t>() - 1]);
        for (std::string cell; std::getline(ss, cell, ',');) f.push_back(cell);
        f.resize(20);  // getline drops the empty last cells
        auto optional = [&](const char* option, const std::string& value) {
            std::string text;
            if (!value.empty()) text.append(" ").append(option).append(" ").append(value);
            return text;
        };
        std::string args = "member --rules library \"" + f[1] + "\" --steel " + f[2] + " --N=" + f[3] + " --My=" + f[4] + " --Mz=" +
                           f[5] + " --Mt=" + f[6] + " --Vy=" + f[7] + " --Vz=" + f[8] + " --length " + f[9] +
                           " --moments-y=" + f[10] + "," + f[11] + "," + f[12] + " --diagram-y " + f[13] +
                           " --load-point " + f[14] + (f[15] == "true" ? " --rolled-method" : "") +
                           (f[16] == "true" ? " --cm-floor" : "") + optional("--lcr-y", f[17]) +
                           optional("--lcr-z", f[18]) + optional("--l-lt", f[19]) + " --json";
        const auto member = nlohmann::json::parse(runSteeldesign(args, false).output);
        const auto& u = member["utilizations"];
        // The batch reports the largest of each group; the member command every entry.
        auto largest = [&](std::initializer_list<const char*> names) {
            nlohmann::json best = nullptr;
            for (const char* n : names)
                if (!u[n].is_null() && (best.is_null() || u[n].get<double>() > best.get<double>())) best = u[n];
            return best;
        };
        const auto& b = row["utilizations"];
        EXPECT_EQ(b["memberCompression"], largest({"CompressionAxisY", "CompressionAxisZ", "Compression"})) << row["id"];
        EXPECT_EQ(b["memberBending"], largest({"BendingAxisY", "BendingAxisZ", "Bending"})) << row["id"];
        EXPECT_EQ(b["memberCompressionBending"],
                  largest({"CompressionBendingAxisY", "CompressionBendingAxisZ", "CompressionBending"}))
            << row["id"];
        EXPECT_EQ(b["memberShearBuckling"], member["utilizationShearBuckling"]) << row["id"];
        EXPECT_EQ(row["memberErrorCode"], member["errorCode"]) << row["id"];
        ++compared;
    }
    EXPECT_EQ(compared, 51);
}
