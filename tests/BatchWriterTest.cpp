// The batch's writer keeps its texts from chunk to chunk; a chunk written on one thread after chunks
// written on two must not carry a text of the former.

#include <batch/BatchInput.h>
#include <batch/BatchRun.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<batch::RowResult> results(std::size_t rows)
{
    std::string text = "id,section,steel,N,My,Mz,Mt,Vy,Vz,length\n";
    for (std::size_t i = 0; i < rows; ++i) {
        text += 'm';
        text += std::to_string(i);
        text += ",IPE 300,S355,-100,20,0,0,0,10,4\n";
    }
    std::istringstream in(text);
    batch::BatchReader reader(in, batch::BatchFormat::Csv, 1);
    std::vector<batch::BatchRow> all, chunk;
    while (reader.next(chunk, 4096)) all.insert(all.end(), chunk.begin(), chunk.end());
    batch::BatchEvaluator evaluator(1);
    std::vector<batch::RowResult> out;
    evaluator.run(all, out);
    return out;
}

std::string written(const std::vector<batch::RowResult>& rows, unsigned jobs)
{
    std::ostringstream out;
    batch::writeRows(out, rows, batch::OutputFormat::Csv, jobs);
    return out.str();
}

TEST(BatchWriter, TheSameTextWhateverTheThreadsOfTheChunksBefore)
{
    const auto large = results(10000), small = results(5000);
    const std::string alone = written(small, 1);
    EXPECT_EQ(static_cast<std::size_t>(std::count(alone.begin(), alone.end(), '\n')), small.size());
    written(large, 2);  // three texts filled on two threads
    EXPECT_EQ(written(small, 1), alone);
    EXPECT_EQ(written(small, 2), alone);
}

} // namespace
