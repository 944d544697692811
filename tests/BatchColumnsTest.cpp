// Rows handed over column by column (the columns of a Python frame) are the rows of the CSV that holds
// the same cells: the same checks, the same rejections with the same messages, written byte for byte
// alike; numbers given as numbers read as their text does.

#include <batch/BatchInput.h>
#include <batch/BatchRun.h>
#include <design/NumberInput.h>
#include <design/Rules.h>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::string fileText(const std::string& path)
{
    std::ifstream file(std::string(STEELDESIGN_SOURCE_DIR) + "/" + path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> splitPlain(const std::string& line)
{
    std::vector<std::string> cells;
    std::string cell;
    std::istringstream in(line);
    while (std::getline(in, cell, ',')) cells.push_back(cell);
    if (!line.empty() && line.back() == ',') cells.emplace_back();
    return cells;
}

std::string written(const std::vector<batch::BatchRow>& rows, design::Rules rules)
{
    std::ostringstream out;
    batch::writeResults(out, batch::runBatch(rows, 2, false, rules), batch::OutputFormat::JsonLines, rules);
    return out.str();
}

// The rows of a CSV text (plain: no quotes) read both ways; numberCells: the number columns' cells
// that read as a normal number (or zero) are given as that number, the others as text.
void expectSameRows(const std::string& csv, bool numberCells)
{
    std::istringstream in(csv);
    const std::vector<batch::BatchRow> fromText = batch::readBatch(in, batch::BatchFormat::Csv);

    std::istringstream lines(csv);
    std::string line;
    std::getline(lines, line);
    const batch::ColumnLayout layout(splitPlain(line));
    std::vector<batch::BatchRow> fromColumns;
    std::vector<batch::InputCell> cells(layout.size());
    for (std::size_t row = 0; std::getline(lines, line); ++row) {
        const std::vector<std::string> texts = splitPlain(line);
        ASSERT_EQ(texts.size(), layout.size()) << line;
        for (std::size_t c = 0; c < texts.size(); ++c) {
            cells[c] = {};
            double x = 0.0;
            if (numberCells && layout.isNumber(c) && design::readNumber(texts[c], x) == design::NumberProblem::None &&
                (x == 0.0 || std::isnormal(x))) {
                cells[c].kind = batch::InputCell::Kind::Number;
                cells[c].number = x;
            } else if (!texts[c].empty()) {
                cells[c].kind = batch::InputCell::Kind::Text;
                cells[c].text = texts[c];
            }
        }
        layout.parse(cells.data(), row, fromColumns.emplace_back());
    }
    ASSERT_EQ(fromColumns.size(), fromText.size());
    for (const design::Rules rules : {design::Rules::En, design::Rules::Library})
        EXPECT_EQ(written(fromColumns, rules), written(fromText, rules));
}

TEST(BatchColumns, TheRandomRowsOverEveryFamilyAsTheirCsv)
{
    // 2,000 rows over every catalogue family and option (tests/data/make_random_rows.py).
    const std::string csv = fileText("tests/data/random-rows.csv");
    ASSERT_GT(csv.size(), 100000u);
    expectSameRows(csv, true);
    expectSameRows(csv, false);
}

TEST(BatchColumns, BadCellsRejectedAsInTheCsv)
{
    // Each row is rejected naming its field with the CSV's message: a number that is no number, one out
    // of range (a subnormal and an overflow go as text), a missing required value, a bad word, a length
    // above the limit, blanks around a text that is trimmed.
    const std::string csv = "id,section,steel,N,My,Mz,Mt,Vy,Vz,length,loadPoint,gammaM0\n"
                            "a,IPE 300,S355,-5x,0,0,0,0,0,3,,\n"
                            "b,IPE 300,S355,1e-320,0,0,0,0,0,3,,\n"
                            "c,IPE 300,S355,1e400,0,0,0,0,0,3,,\n"
                            "d,IPE 300,S355,,0,0,0,0,0,3,,\n"
                            "e,IPE 300,S355,-5,0,0,0,0,0,3,sideways,\n"
                            "f,IPE 300,S355,-5,0,0,0,0,0,1e4,,\n"
                            "g,  IPE 300 ,S355,-5,0,0,0,0,0,3,,0\n"
                            "h,  IPE 300 ,S355,-5,10,0,0,0,20,3,TOP,1.05\n";
    expectSameRows(csv, true);
}

TEST(BatchColumns, NamesCheckedAsACsvHeader)
{
    const auto message = [](const std::vector<std::string>& names) {
        try {
            batch::ColumnLayout layout(names);
        } catch (const design::InputError& e) {
            return std::string(e.what());
        }
        return std::string("accepted");
    };
    const std::vector<std::string> required{"id", "section", "steel", "N", "My", "Mz", "Mt", "Vy", "Vz", "length"};
    EXPECT_EQ(message(required), "accepted");
    auto blanks = required;
    blanks[3] = " N ";
    EXPECT_EQ(message(blanks), "accepted");
    auto missing = required;
    missing.pop_back();
    EXPECT_EQ(message(missing), "batch: the header (line 1) has no column 'length'");
    auto unknown = required;
    unknown.push_back("Nx");
    EXPECT_EQ(message(unknown), "batch: unknown column 'Nx' in the header (line 1)");
    auto twice = required;
    twice.push_back("My");
    EXPECT_EQ(message(twice), "batch: the header (line 1) names the column 'My' twice");
}

} // namespace
