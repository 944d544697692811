// The batch's output file (batch::StreamedOutputFile): the text appears under its name only when complete,
// at once, in place of an older file; a run that ends without commit leaves the older file byte for byte
// and no temporary. The write-back hints given while the text grows change nothing of the text.

#include <design/InputError.h>
#include <batch/OutputFile.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string slurp(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

class StreamedOutputFile : public testing::Test {
protected:
    StreamedOutputFile()
        : dir_(fs::path(testing::TempDir()) / ("steeldesign_out_" + std::to_string(getpid()) + "_" +
                                               testing::UnitTest::GetInstance()->current_test_info()->name()))
    {
        fs::create_directories(dir_);
        std::ofstream(path(), std::ios::binary) << "results of yesterday\n";
    }
    ~StreamedOutputFile() override
    {
        std::error_code ec;
        fs::remove_all(dir_, ec);
    }
    std::string path() const { return (dir_ / "results.csv").string(); }
    // The names in the folder besides results.csv (a temporary left behind would be one).
    std::vector<std::string> others() const
    {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(dir_))
            if (entry.path().filename() != "results.csv") names.push_back(entry.path().filename().string());
        return names;
    }

    fs::path dir_;
};

// 3 MB in 30,000 lines, with a write-back hint every 1,000 lines: the committed file holds every byte in
// order and replaces the older one; no temporary is left.
TEST_F(StreamedOutputFile, CommitReplacesTheOlderFileWithTheWholeText)
{
    std::string expected;
    {
        batch::StreamedOutputFile out("--out", path());
        for (int i = 0; i < 30000; ++i) {
            std::string line = "row " + std::to_string(i) + "," + std::string(90, static_cast<char>('a' + i % 26)) + "\n";
            out.stream() << line;
            expected += line;
            if (i % 1000 == 999) out.written();
            if (i == 15000) {
                EXPECT_EQ(slurp(path()), "results of yesterday\n");  // nothing seen before the commit
            }
        }
        out.commit();
    }
    EXPECT_EQ(slurp(path()), expected);
    EXPECT_TRUE(others().empty());
}

// Destroyed without a commit (an interrupted run, an exception), or discarded: the older file stays.
TEST_F(StreamedOutputFile, WithoutCommitTheOlderFileStaysAndNoTemporaryIsLeft)
{
    {
        batch::StreamedOutputFile out("--out", path());
        out.stream() << std::string(1 << 20, 'x');
        out.written();
        // A temporary of a name of its own, hidden, beside the file.
        EXPECT_TRUE(fs::exists(out.temporary()));
        EXPECT_EQ(fs::path(out.temporary()).parent_path(), dir_);
        EXPECT_EQ(fs::path(out.temporary()).filename().string().rfind(".results.csv.", 0), 0u);
    }
    EXPECT_EQ(slurp(path()), "results of yesterday\n");
    EXPECT_TRUE(others().empty());
    {
        batch::StreamedOutputFile out("--out", path());
        out.stream() << "half";
        out.discard();
        out.discard();  // twice is harmless
    }
    EXPECT_EQ(slurp(path()), "results of yesterday\n");
    EXPECT_TRUE(others().empty());
}

// A file that cannot be created is bad input naming the option and the file.
TEST_F(StreamedOutputFile, AFileThatCannotBeCreatedNamesTheOption)
{
    const std::string missing = (dir_ / "no such folder" / "results.csv").string();
    try {
        batch::StreamedOutputFile out("--out", missing);
        FAIL() << "no error";
    } catch (const design::InputError& e) {
        EXPECT_EQ(std::string(e.what()), "--out: cannot write '" + missing + "'");
    }
}

// The file keeps its mode (a 0640 file stays 0640); a symbolic link is written through, to the file it
// names, and stays a link; a link planted where an older version put its temporary (results.csv.part ->
// a precious file) is never followed.
TEST_F(StreamedOutputFile, ModeLinksAndPlantedLinksAreRespected)
{
    ::chmod(path().c_str(), 0640);
    const std::string precious = (dir_ / "precious.txt").string();
    std::ofstream(precious) << "keep me\n";
    fs::create_symlink(precious, path() + ".part");
    {
        batch::StreamedOutputFile out("--out", path());
        out.stream() << "new\n";
        out.commit();
    }
    EXPECT_EQ(slurp(path()), "new\n");
    EXPECT_EQ(fs::status(path()).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    EXPECT_EQ(slurp(precious), "keep me\n");
    fs::remove(path() + ".part");

    const std::string link = (dir_ / "latest.csv").string();
    fs::create_symlink(path(), link);
    {
        batch::StreamedOutputFile out("--out", link);
        out.stream() << "through the link\n";
        out.commit();
    }
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(slurp(path()), "through the link\n");
}

// A second writer of the same file is refused while the first holds it (no file mixed from two runs);
// once the first has committed, the file can be written again.
TEST_F(StreamedOutputFile, ASecondWriterOfTheSameFileIsRefused)
{
    batch::StreamedOutputFile first("--out", path());
    first.stream() << "first\n";
    try {
        batch::StreamedOutputFile second("--out", path());
        FAIL() << "no error";
    } catch (const design::InputError& e) {
        EXPECT_EQ(std::string(e.what()), "--out: '" + path() + "' is being written by another run");
    }
    first.commit();
    EXPECT_EQ(slurp(path()), "first\n");
    batch::StreamedOutputFile third("--out", path());
    third.stream() << "third\n";
    third.commit();
    EXPECT_EQ(slurp(path()), "third\n");
    EXPECT_TRUE(others().empty());
}

// A device, a pipe or a socket is never replaced by a file: bad input naming the option. The pipe and the
// device node are the test's own (a device node needs the privilege to make one), never the machine's /dev.
TEST_F(StreamedOutputFile, DevicesAndPipesAreRefused)
{
    const std::string fifo = (dir_ / "pipe").string();
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    std::vector<std::string> targets{fifo};
    const std::string node = (dir_ / "null").string();
    const bool device = ::mknod(node.c_str(), S_IFCHR | 0600, makedev(1, 3)) == 0;
    if (device) targets.push_back(node);
    for (const std::string& target : targets) {
        EXPECT_THROW(batch::checkOutputPath("--out", target, ""), design::InputError) << target;
        EXPECT_THROW(batch::StreamedOutputFile("--out", target), design::InputError) << target;
    }
    if (device) {
        EXPECT_TRUE(fs::is_character_file(node));
    }
    EXPECT_TRUE(fs::is_fifo(fifo));
}

} // namespace
