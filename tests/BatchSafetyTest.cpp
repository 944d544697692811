// The batch keeps the user's data safe: it never writes over its input (also through a link), refuses
// directories, reads a spreadsheet's UTF-8 byte-order mark and CRLF line ends, checks every other row
// when one is rejected, and an interrupted run leaves an existing --out byte for byte as it was.

#include "CommandRunner.h"

#include <batch/BatchInput.h>
#include <design/InputError.h>

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

const std::string example = std::string(STEELDESIGN_SOURCE_DIR) + "/examples/frames.csv";

std::string slurp(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// A directory of its own for each test, removed with everything in it.
class Scratch {
public:
    Scratch() : dir_(fs::path(::testing::TempDir()) / ("steeldesign_safety_" + std::to_string(getpid()) + "_" +
                                                        ::testing::UnitTest::GetInstance()->current_test_info()->name()))
    {
        fs::create_directories(dir_);
    }
    ~Scratch()
    {
        std::error_code ec;
        fs::remove_all(dir_, ec);
    }
    std::string path(const std::string& name) const { return (dir_ / name).string(); }
    std::string write(const std::string& name, const std::string& content) const
    {
        std::ofstream(path(name), std::ios::binary) << content;
        return path(name);
    }

private:
    fs::path dir_;
};

// The example's rows repeated to at least n data rows, with its header.
std::string repeatedExample(std::size_t n)
{
    std::ifstream in(example);
    std::string header, line;
    std::getline(in, header);
    std::vector<std::string> rows;
    while (std::getline(in, line)) rows.push_back(line);
    std::string out = header + "\n";
    for (std::size_t i = 0; i < n; ++i) out += rows[i % rows.size()] + "\n";
    return out;
}

} // namespace

TEST(BatchSafety, OutputNamingTheInputIsRefusedAlsoThroughALink)
{
    const Scratch s;
    const std::string model = s.write("model.csv", slurp(example));
    const std::string before = slurp(model);
    const CommandRun same = runSteeldesign("batch " + model + " --out " + model);
    EXPECT_EQ(same.exitCode, 2);
    EXPECT_NE(same.output.find("is the input file"), std::string::npos) << same.output;
    fs::create_symlink(model, s.path("link.csv"));
    const CommandRun link = runSteeldesign("batch " + model + " --out " + s.path("link.csv"));
    EXPECT_EQ(link.exitCode, 2);
    const CommandRun reverse = runSteeldesign("batch " + s.path("link.csv") + " --out " + model);
    EXPECT_EQ(reverse.exitCode, 2);
    EXPECT_EQ(slurp(model), before);  // the model is untouched
}

TEST(BatchSafety, DirectoriesAndMissingFilesAreBadInput)
{
    const Scratch s;
    const CommandRun dir = runSteeldesign("batch " + s.path(""));
    EXPECT_EQ(dir.exitCode, 2);
    EXPECT_NE(dir.output.find("is a directory"), std::string::npos) << dir.output;
    const CommandRun missing = runSteeldesign("batch " + s.path("nothing.csv"));
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_NE(missing.output.find("does not exist"), std::string::npos) << missing.output;
    const CommandRun outDir = runSteeldesign("batch " + example + " --out " + s.path(""));
    EXPECT_EQ(outDir.exitCode, 2);
}

// A CSV saved by a spreadsheet: a UTF-8 byte-order mark and CRLF line ends give the same results.
TEST(BatchSafety, ByteOrderMarkAndCrlfAreRead)
{
    const Scratch s;
    std::string crlf = "\xEF\xBB\xBF";
    for (char c : slurp(example)) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    const std::string spreadsheet = s.write("excel.csv", crlf);
    const CommandRun a = runSteeldesign("batch " + spreadsheet + " --format csv", false);
    const CommandRun b = runSteeldesign("batch " + example + " --format csv", false);
    EXPECT_EQ(a.exitCode, b.exitCode);
    EXPECT_EQ(a.output, b.output);
    // Standard input works as a file.
    const CommandRun piped = runSteeldesign("batch - --format csv < " + example, false);
    EXPECT_EQ(piped.output, b.output);
}

// A row the library cannot take, in the middle of 20,000: that row is rejected with its line and field,
// every other row is checked.
TEST(BatchSafety, OneBadRowNeverStopsTheBatch)
{
    const Scratch s;
    std::string text = repeatedExample(20000);
    const std::size_t middle = text.find('\n', text.size() / 2) + 1;
    text.insert(middle, "bad,CHS 1e999x5,S355,-10,0,0,0,0,0,3,,,,,,,,,,\n");  // 20 fields
    const std::string input = s.write("large.csv", text);
    const CommandRun r = runSteeldesign("batch " + input + " --format csv --out " + s.path("out.csv"));
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.output.find("rows 20001"), std::string::npos) << r.output.substr(0, 300);
    EXPECT_NE(r.output.find("rejected 1"), std::string::npos);
    EXPECT_NE(r.output.find("field section"), std::string::npos);
    EXPECT_NE(r.output.find("out of range"), std::string::npos);
    std::ifstream out(s.path("out.csv"));
    std::size_t lines = 0;
    for (std::string line; std::getline(out, line);) ++lines;
    EXPECT_EQ(lines, 20002u);  // header and every row
}

// SIGINT and SIGTERM during a long run: exit 130, no temporary file left, the previous --out unchanged.
TEST(BatchSafety, InterruptedRunLeavesThePreviousOutputUntouched)
{
    const Scratch s;
    const std::string input = s.write("huge.csv", repeatedExample(600000));
    const std::string out = s.write("results.csv", "results of yesterday\n");
    for (int sig : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        const pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) {
            std::freopen("/dev/null", "w", stdout);
            std::freopen("/dev/null", "w", stderr);
            execl(STEELDESIGN_CLI, STEELDESIGN_CLI, "batch", input.c_str(), "--format", "csv", "--out", out.c_str(),
                  static_cast<char*>(nullptr));
            _exit(127);
        }
        usleep(300000);
        kill(pid, sig);
        int status = 0;
        waitpid(pid, &status, 0);
        ASSERT_TRUE(WIFEXITED(status)) << "signal " << sig;
        EXPECT_EQ(WEXITSTATUS(status), 130) << "signal " << sig;
        EXPECT_EQ(slurp(out), "results of yesterday\n");
        std::size_t entries = 0;
        for (const auto& entry : fs::directory_iterator(fs::path(out).parent_path())) entries += entry.is_regular_file() ? 1 : 0;
        EXPECT_EQ(entries, 2u) << "signal " << sig;  // huge.csv and results.csv: no temporary left
    }
}

// `batch - --out model.csv < model.csv` would overwrite the model it reads: refused, the model untouched;
// an output that cannot be written to standard output (a full disk) is exit 2, never a quiet 0.
TEST(BatchSafety, StandardInputFromTheOutputFileAndAFullDiskAreErrors)
{
    const Scratch s;
    const std::string model = s.write("model.csv", slurp(example));
    const CommandRun same = runSteeldesign("batch - --out " + model + " < " + model);
    EXPECT_EQ(same.exitCode, 2);
    EXPECT_NE(same.output.find("is the file on standard input"), std::string::npos) << same.output;
    EXPECT_EQ(slurp(model), slurp(example));
    if (fs::exists("/dev/full")) {
        // The command's standard error to the pipe read here, its standard output to the full device.
        const std::string command = std::string(STEELDESIGN_CLI) + " check \"IPE 300\" --N -100 --json 2>&1 >/dev/full";
        FILE* pipe = popen(command.c_str(), "r");
        ASSERT_NE(pipe, nullptr);
        std::string message;
        char buffer[512];
        while (std::fgets(buffer, sizeof buffer, pipe)) message += buffer;
        const int status = pclose(pipe);
        EXPECT_EQ(WEXITSTATUS(status), 2);
        EXPECT_NE(message.find("steeldesign: cannot write the output: No space left on device"), std::string::npos)
            << message;
        const CommandRun batch = runSteeldesign("batch " + model + " > /dev/full", false);
        EXPECT_EQ(batch.exitCode, 2) << batch.output;
    }
}

// The streaming batch writes the same bytes whatever the number of threads, in CSV and JSON Lines, for the
// example and for 100,000 rows (16 chunks).
TEST(BatchSafety, OutputIsTheSameOnOneAndTwoThreads)
{
    const Scratch s;
    const std::string large = s.write("large.csv", repeatedExample(100000));
    for (const std::string& input : {example, large}) {
        for (const char* format : {"csv", "jsonl"}) {
            const std::string arguments = "batch " + input + " --format " + format + " --jobs ";
            const CommandRun one = runSteeldesign(arguments + "1", false);
            const CommandRun two = runSteeldesign(arguments + "2", false);
            EXPECT_EQ(one.exitCode, two.exitCode);
            EXPECT_EQ(one.output.size(), two.output.size()) << input << " " << format;
            EXPECT_TRUE(one.output == two.output) << input << " " << format;
        }
    }
}

// A column named twice in the CSV header, or a key given twice in a JSON row: which of the two values
// was meant cannot be known, so the run stops with exit 2 naming it; an existing --out is left as it was
// and no temporary remains.
TEST(BatchSafety, AColumnOrAKeyGivenTwiceIsBadInput)
{
    const Scratch s;
    const std::string out = s.write("results.csv", "results of yesterday\n");
    const std::string csv = s.write("twice.csv", "id,section,steel,N,My,Mz,Mt,Vy,Vz,length,N\n"
                                                 "1,IPE 300,S355,-100,0,0,0,0,0,3,-200\n");
    const CommandRun c = runSteeldesign("batch " + csv + " --out " + out);
    EXPECT_EQ(c.exitCode, 2);
    EXPECT_NE(c.output.find("the header (line 1) names the column 'N' twice"), std::string::npos) << c.output;
    std::string rows;
    for (int i = 1; i <= 300; ++i)
        rows += "{\"id\":\"" + std::to_string(i) + "\",\"section\":\"IPE 300\",\"steel\":\"S355\",\"N\":-100," +
                (i == 250 ? "\"My\":5,\"My\":50," : "") + "\"length\":3}\n";
    const std::string jsonl = s.write("twice.jsonl", rows);
    for (const char* jobs : {"1", "2"}) {
        const CommandRun j = runSteeldesign("batch " + jsonl + " --jobs " + jobs + " --out " + out);
        EXPECT_EQ(j.exitCode, 2) << jobs;
        EXPECT_NE(j.output.find("batch: line 250: the key 'My' is given twice"), std::string::npos) << j.output;
    }
    EXPECT_EQ(slurp(out), "results of yesterday\n");
    std::size_t entries = 0;
    for (const auto& entry : fs::directory_iterator(fs::path(out).parent_path())) entries += entry.is_regular_file();
    EXPECT_EQ(entries, 3u);  // the two inputs and results.csv: no temporary left
    std::istringstream in(rows);
    EXPECT_THROW(batch::readBatch(in, batch::BatchFormat::JsonLines), design::InputError);
}

// A line longer than 1 MiB stops the run with its number, whether it ends or not (an endless line of
// NULs as /dev/zero gives); memory is not spent on it. A line just under the limit is a row like any other.
TEST(BatchSafety, ALineLongerThanTheLimitIsBadInputWithItsNumber)
{
    const Scratch s;
    const std::string header = "id,section,steel,N,My,Mz,Mt,Vy,Vz,length\n";
    const std::string row = "1,IPE 300,S355,-100,0,0,0,0,0,3\n";
    const std::string longCell(batch::maxLineBytes + 1, '7');
    const std::string ended = s.write("long.csv", header + row + "2,IPE 300,S355," + longCell + ",0,0,0,0,0,3\n" + row);
    const CommandRun r = runSteeldesign("batch " + ended + " --out " + s.path("out.csv"));
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.output.find("batch: line 3 is longer than 1048576 bytes"), std::string::npos) << r.output.substr(0, 300);
    EXPECT_FALSE(fs::exists(s.path("out.csv")));
    const std::string zeros = s.write("zeros.csv", std::string(3 * batch::maxLineBytes, '\0'));
    const CommandRun z = runSteeldesign("batch " + zeros);
    EXPECT_EQ(z.exitCode, 2);
    EXPECT_NE(z.output.find("batch: line 1 is longer than"), std::string::npos) << z.output.substr(0, 300);
    // Just under the limit: "-0000...0100" is -100 with a long run of zeros, read and checked.
    const std::string padded = "2,IPE 300,S355,-" + std::string(batch::maxLineBytes - 40, '0') + "100,0,0,0,0,0,3";
    ASSERT_LE(padded.size(), batch::maxLineBytes);
    const std::string under = s.write("under.csv", header + row + padded + "\n");
    const CommandRun u = runSteeldesign("batch " + under + " --format csv --out " + s.path("under.out"));
    EXPECT_EQ(u.exitCode, 0) << u.output.substr(0, 300);
    // The padded row's results are the plain row's (after the line and the id).
    std::istringstream results(slurp(s.path("under.out")));
    std::string head, first, second;
    std::getline(results, head);
    std::getline(results, first);
    std::getline(results, second);
    ASSERT_NE(first.find(",checked,"), std::string::npos) << first;
    EXPECT_EQ(first.substr(first.find(",checked,")), second.substr(second.find(",checked,")));
}

namespace {

// Runs the command with arguments in a child of its own (its output to /dev/null); the pid.
pid_t spawn(const std::vector<std::string>& arguments)
{
    const pid_t pid = fork();
    if (pid == 0) {
        std::freopen("/dev/null", "w", stdout);
        std::freopen("/dev/null", "w", stderr);
        std::vector<char*> argv{const_cast<char*>(STEELDESIGN_CLI)};
        for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        execv(STEELDESIGN_CLI, argv.data());
        _exit(127);
    }
    return pid;
}

int exitOf(pid_t pid)
{
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

// Two batches writing the same --out at once: the later one is refused while the first holds the file
// ("is being written by another run", exit 2) or runs after it; the file is always the complete output of
// one run, never lines of both.
TEST(BatchSafety, TwoConcurrentBatchesLeaveTheCompleteOutputOfOne)
{
    const Scratch s;
    const std::string input = s.write("model.csv", repeatedExample(100000));
    const std::string reference = s.path("reference.csv"), out = s.write("out.csv", "yesterday\n");
    ASSERT_LE(exitOf(spawn({"batch", input, "--format", "csv", "--out", reference})), 3);
    for (int round = 0; round < 2; ++round) {
        const pid_t a = spawn({"batch", input, "--format", "csv", "--out", out});
        const pid_t b = spawn({"batch", input, "--format", "csv", "--out", out});
        const int ra = exitOf(a), rb = exitOf(b);
        EXPECT_TRUE((ra <= 1 || ra == 3) || (rb <= 1 || rb == 3)) << ra << " " << rb;
        for (const int r : {ra, rb}) EXPECT_TRUE(r == 0 || r == 1 || r == 2 || r == 3) << r;
        EXPECT_EQ(slurp(out), slurp(reference)) << "round " << round;
        std::size_t entries = 0;
        for (const auto& entry : fs::directory_iterator(fs::path(out).parent_path())) entries += entry.is_regular_file();
        EXPECT_EQ(entries, 3u);  // model, reference, out: no temporary left
    }
}

// A device node in the test's own folder (a private copy of /dev/null's numbers): --out never replaces it
// with a file.
TEST(BatchSafety, APrivateDeviceNodeIsNeverReplaced)
{
    const Scratch s;
    const std::string node = s.path("null");
    if (::mknod(node.c_str(), S_IFCHR | 0600, makedev(1, 3)) != 0) GTEST_SKIP() << "mknod needs privileges here";
    const CommandRun r = runSteeldesign("batch " + example + " --out " + node);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(fs::is_character_file(node));
    const CommandRun html = runSteeldesign("report " + example + " --out " + node);
    EXPECT_EQ(html.exitCode, 2);
    EXPECT_TRUE(fs::is_character_file(node));
}
