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
#include <unistd.h>

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
    EXPECT_FALSE(fs::exists(path() + ".part"));
}

// Destroyed without a commit (an interrupted run, an exception), or discarded: the older file stays.
TEST_F(StreamedOutputFile, WithoutCommitTheOlderFileStaysAndNoTemporaryIsLeft)
{
    {
        batch::StreamedOutputFile out("--out", path());
        out.stream() << std::string(1 << 20, 'x');
        out.written();
        EXPECT_TRUE(fs::exists(path() + ".part"));
    }
    EXPECT_EQ(slurp(path()), "results of yesterday\n");
    EXPECT_FALSE(fs::exists(path() + ".part"));
    {
        batch::StreamedOutputFile out("--out", path());
        out.stream() << "half";
        out.discard();
        out.discard();  // twice is harmless
    }
    EXPECT_EQ(slurp(path()), "results of yesterday\n");
    EXPECT_FALSE(fs::exists(path() + ".part"));
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

} // namespace
