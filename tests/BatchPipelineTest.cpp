// The pipeline of `steeldesign batch` (batch::runPipeline: a reader thread fills a ring of slices, workers
// parse, evaluate and format them into rows and results reused from turn to turn, a writer thread writes
// them in order, a batch of slices at a time) against the plainest reference: every row read at once,
// evaluated on its own into a fresh result (batch::evaluateRow), written on one thread. The bytes, the
// summary and the exit code must be the same for every size of the ring (one row, fewer rows than a
// slice, slices that end inside the model, a ring of two slices, of eight, of sixty-four) and on one and
// two threads, with rows of every kind following each other in the same slots: checked rows, rows
// rejected by the reader, by the section or the steel, quoted ids, words in other cases.

#include <batch/BatchInput.h>
#include <batch/BatchRun.h>

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

namespace {

std::string fileText(const char* name)
{
    std::ifstream file(std::string(STEELDESIGN_SOURCE_DIR) + "/examples/" + name);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

// The example model with rows of the other kinds mixed in, repeated to about 1,200 rows.
std::string csvModel()
{
    const std::string example = fileText("frames.csv");
    const std::string header = example.substr(0, example.find('\n') + 1);
    const std::string rows = example.substr(header.size());
    const std::string odd =
        "bad-section,IPE 999,S355,-152.0,-318.0,0,0,0,53.0,6.0,0,-159.0,-318.0,polygonal,center,true,false,,,\n"
        "bad-steel,IPE 450,S999,-152.0,-318.0,0,0,0,53.0,6.0,0,-159.0,-318.0,polygonal,center,true,false,,,\n"
        "bad-number,IPE 450,S355,-15x,-318.0,0,0,0,53.0,6.0,0,-159.0,-318.0,polygonal,center,true,false,,,\n"
        "short,row\n"
        "\n"
        "\"quoted, \"\"id\"\"\",IPE 400,s355 ,-58,-318,0,0,0,96,3,-318,196,-31.8,PARABOLIC,Top,yes,no,,,\n"
        " spaced , HEB 300 ,S235,12.5,40,5,1,3,20,0,,,,polygonal,bottom,,true,4,2,\n"
        "negative,IPE 300,S355,-100,50,0,0,0,20,-3,,,,,,,,,,\n"
        "no-member,RHS 250x150x8,S355,-400,30,10,2,5,40,0,,,,,,,,,,\n";
    std::string text = header;
    for (int i = 0; i < 20; ++i) text += rows + odd;
    return text;
}

// The JSON Lines example with lines the plain reader leaves to the document, repeated.
std::string jsonModel()
{
    const std::string rows = fileText("frames.jsonl");
    const std::string odd =
        "{not json\n"
        "{\"id\":\"unknown-key\",\"section\":\"IPE 300\",\"steel\":\"S355\",\"bogus\":1}\n"
        "{\"id\":\"esc\\u0061ped\",\"section\":\"IPE 300\",\"steel\":\"S355\",\"N\":-1e2,\"My\":0,\"Mz\":0,\"Mt\":0,"
        "\"Vy\":0,\"Vz\":10,\"length\":3}\n"
        "\n";
    std::string text;
    for (int i = 0; i < 20; ++i) text += rows + odd;
    return text;
}

struct Output {
    std::string bytes, summary;
    int exitCode = 0;
};

Output reference(const std::string& model, batch::BatchFormat in, batch::OutputFormat out)
{
    std::istringstream stream(model);
    const std::vector<batch::BatchRow> rows = batch::readBatch(stream, in);
    std::vector<batch::RowResult> results;
    for (const batch::BatchRow& row : rows) results.push_back(batch::evaluateRow(row));
    std::ostringstream text;
    batch::writeRows(text, results, out, 1);
    batch::BatchSummary summary;
    summary.add(results);
    return {text.str(), summary.text(), summary.exitCode()};
}

Output pipeline(const std::string& model, batch::BatchFormat in, batch::OutputFormat out, unsigned jobs,
                std::size_t chunkRows)
{
    std::istringstream stream(model);
    batch::BatchReader reader(stream, in, jobs);
    std::ostringstream text;
    batch::BatchSummary summary;
    batch::runPipeline(reader, text, out, jobs, chunkRows, summary);
    return {text.str(), summary.text(), summary.exitCode()};
}

using Case = std::tuple<bool, batch::OutputFormat, unsigned, std::size_t>;  // JSON Lines in, out, jobs, chunk

class BatchPipeline : public testing::TestWithParam<Case> {};

TEST_P(BatchPipeline, SameBytesAsEveryRowEvaluatedOnItsOwn)
{
    const auto [jsonIn, out, jobs, chunkRows] = GetParam();
    const batch::BatchFormat in = jsonIn ? batch::BatchFormat::JsonLines : batch::BatchFormat::Csv;
    const std::string model = jsonIn ? jsonModel() : csvModel();
    const Output expected = reference(model, in, out);
    const Output actual = pipeline(model, in, out, jobs, chunkRows);
    ASSERT_FALSE(expected.bytes.empty());
    EXPECT_EQ(actual.bytes, expected.bytes);
    EXPECT_EQ(actual.summary, expected.summary);
    EXPECT_EQ(actual.exitCode, expected.exitCode);
    EXPECT_EQ(expected.exitCode, 2);  // the model has rejected rows
}

INSTANTIATE_TEST_SUITE_P(ChunksSlicesThreads, BatchPipeline,
                         testing::Combine(testing::Bool(),
                                          testing::Values(batch::OutputFormat::Csv, batch::OutputFormat::JsonLines),
                                          testing::Values(1u, 2u),
                                          testing::Values(std::size_t{1}, std::size_t{7}, std::size_t{129},
                                                          std::size_t{300}, std::size_t{1000}, std::size_t{8192})));

// A stop asked for before the run writes nothing and leaves the summary empty.
TEST(BatchPipelineStop, AStopRequestedBeforeTheRunWritesNoRow)
{
    std::istringstream stream(csvModel());
    batch::BatchReader reader(stream, batch::BatchFormat::Csv, 2);
    std::ostringstream text;
    batch::BatchSummary summary;
    batch::requestBatchStop();
    batch::runPipeline(reader, text, batch::OutputFormat::Csv, 2, 64, summary);
    batch::resetBatchStop();
    EXPECT_TRUE(text.str().empty());
    EXPECT_EQ(summary.exitCode(), 0);
}

// A stream that fails at its end while the reader thread reads it (a disk error): the run ends with the
// stream's error on the calling thread, not with std::terminate on the reader's.
class FailingBuffer : public std::stringbuf {
public:
    explicit FailingBuffer(const std::string& text) : std::stringbuf(text) {}

protected:
    int_type underflow() override
    {
        if (gptr() == egptr()) throw std::runtime_error("the disk failed");
        return std::stringbuf::underflow();
    }
};

TEST(BatchPipelineFailure, AReadErrorEndsTheRunWithTheError)
{
    for (const unsigned jobs : {1u, 2u}) {
        FailingBuffer buffer(csvModel());
        std::istream stream(&buffer);
        stream.exceptions(std::ios::badbit);
        batch::BatchReader reader(stream, batch::BatchFormat::Csv, jobs);
        std::ostringstream text;
        batch::BatchSummary summary;
        EXPECT_THROW(batch::runPipeline(reader, text, batch::OutputFormat::Csv, jobs, 64, summary), std::runtime_error);
    }
}

} // namespace
