// JSON Lines rows are read without a document when they are plain (flat, known keys, strings without
// escapes, short decimals). Such a row must mean exactly what the document makes of it: each plain row
// below is read beside the same row with one string written with a \u escape, which only the document
// reads, and the two parsed rows must agree field for field (or be rejected alike). Also: a number
// beyond a double rejects its row instead of ending the batch.

#include <batch/BatchInput.h>

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

namespace {

std::vector<batch::BatchRow> read(const std::string& text)
{
    std::istringstream in(text);
    batch::BatchReader reader(in, batch::BatchFormat::JsonLines, 1);
    std::vector<batch::BatchRow> rows, chunk;
    while (reader.next(chunk, 64)) rows.insert(rows.end(), chunk.begin(), chunk.end());
    return rows;
}

bool bits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }
bool bits(const std::optional<double>& a, const std::optional<double>& b)
{
    return a.has_value() == b.has_value() && (!a || bits(*a, *b));
}

std::string differences(const batch::MemberRow& a, const batch::MemberRow& b)
{
    std::string out;
    auto check = [&](bool same, const char* name) {
        if (!same) out += std::string(name) + " ";
    };
    check(a.id == b.id, "id");
    check(a.section == b.section, "section");
    check(a.steel == b.steel, "steel");
    check(bits(a.N, b.N) && bits(a.My, b.My) && bits(a.Mz, b.Mz) && bits(a.Mt, b.Mt) && bits(a.Vy, b.Vy) &&
              bits(a.Vz, b.Vz),
          "forces");
    check(bits(a.length, b.length) && bits(a.lengthY, b.lengthY) && bits(a.lengthZ, b.lengthZ) &&
              bits(a.lengthLT, b.lengthLT),
          "lengths");
    for (int i = 0; i < 3; ++i) check(bits(a.momentsY[i], b.momentsY[i]) && bits(a.momentsZ[i], b.momentsZ[i]), "moments");
    check(a.diagramY == b.diagramY && a.diagramZ == b.diagramZ && a.loadPoint == b.loadPoint, "choices");
    check(bits(a.maxMoment, b.maxMoment) && bits(a.mcr, b.mcr) && bits(a.cTheta, b.cTheta) &&
              bits(a.shearPanel, b.shearPanel) && bits(a.gammaM0, b.gammaM0) && bits(a.gammaM1, b.gammaM1),
          "optional numbers");
    check(a.rolledMethod == b.rolledMethod && a.mcrMethod == b.mcrMethod &&
              a.torsionallyDeformable == b.torsionallyDeformable && a.cmFloor == b.cmFloor && a.elastic == b.elastic,
          "options");
    return out;
}

TEST(JsonLinesReading, PlainRowsMeanWhatTheDocumentMakesOfThem)
{
    const std::string base = R"("section":"IPE 300","steel":"S355",)";
    // The steel spelled "S\u0033\u00355" is "S355", read only through the document.
    const std::string escapedBase = R"("section":"IPE 300","steel":"S\u0033\u00355",)";
    const std::string tails[] = {
        R"("N":-152.0,"My":-318,"Mz":0,"Mt":0,"Vy":0,"Vz":53.5,"length":6})",
        R"("N":0.1,"My":0.30000000000000,"Mz":-0.0,"Mt":0,"Vy":0,"Vz":0,"length":0})",
        R"("N":-123456789012345,"My":12345.6789012345,"Mz":0,"Mt":0,"Vy":0,"Vz":0,"length":0})",
        R"("N":"-300","My":"80.5","Mz":0,"Mt":0,"Vy":0,"Vz":0,"length":"4"})",
        R"("N":-200, "My" : 60 ,"Mz":0,"Mt":0,"Vy":0,"Vz":40,"length":3,"lengthY":6,"lengthZ":null,"lengthLT":1.5} )",
        R"("N":-200,"My":60,"Mz":0,"Mt":0,"Vy":0,"Vz":40,"length":3,"MyStart":0,"MyMid":30,"MyEnd":60,"diagramY":"Parabolic","loadPoint":"TOP"})",
        R"("N":-200,"My":60,"Mz":0,"Mt":0,"Vy":0,"Vz":40,"length":3,"rolledMethod":false,"cmFloor":true,"elastic":"yes","torsionallyDeformable":null})",
        R"("N":-200,"My":60,"Mz":0,"Mt":0,"Vy":0,"Vz":40,"length":3,"gammaM0":1.05,"gammaM1":1.1,"cTheta":12.5,"shearPanel":2000,"mcrMethod":"numerical"})",
        // Rejected alike: a negative length, a word for a number, an unknown choice, a missing force.
        R"("N":-200,"My":60,"Mz":0,"Mt":0,"Vy":0,"Vz":40,"length":-1})",
        R"("N":"abc","My":60,"Mz":0,"Mt":0,"Vy":0,"Vz":40,"length":3})",
        R"("N":-200,"My":60,"Mz":0,"Mt":0,"Vy":0,"Vz":40,"length":3,"loadPoint":"middle"})",
        R"("N":-200,"My":60,"Mz":0,"Mt":0,"Vy":0,"length":3})",
    };
    for (const std::string& tail : tails) {
        const std::string plain = R"({"id":"m1",)" + base + tail;
        const std::string escaped = R"({"id":"m1",)" + escapedBase + tail;
        const auto rows = read(plain + "\n" + escaped + "\n");
        ASSERT_EQ(rows.size(), 2u) << plain;
        const auto* a = std::get_if<batch::MemberRow>(&rows[0]);
        const auto* b = std::get_if<batch::MemberRow>(&rows[1]);
        ASSERT_EQ(a != nullptr, b != nullptr) << plain;
        if (a) {
            EXPECT_EQ(differences(*a, *b), "") << plain;
        } else {
            const auto& ea = std::get<batch::RowError>(rows[0]);
            const auto& eb = std::get<batch::RowError>(rows[1]);
            EXPECT_EQ(ea.field, eb.field) << plain;
            EXPECT_EQ(ea.message, eb.message) << plain;
            EXPECT_EQ(ea.id, eb.id) << plain;
        }
    }
}

// Read through the document: its own reading of numbers, escapes, nesting, and its errors.
TEST(JsonLinesReading, RowsOnlyTheDocumentReadsKeepTheirMeaning)
{
    const auto rows = read(
        R"({"id":5,"section":"IPE 300","steel":"S355","N":-1e2,"My":0,"Mz":0,"Mt":0,"Vy":0,"Vz":0,"length":0})" "\n"
        R"({"id":"x","section":"IPE 300","steel":"S355","N":1e400,"My":0,"Mz":0,"Mt":0,"Vy":0,"Vz":0,"length":0})" "\n"
        R"({"id":"y","section":"IPE 300","steel":"S355","N":[1],"My":0,"Mz":0,"Mt":0,"Vy":0,"Vz":0,"length":0})" "\n"
        R"({"id":"z","colour":"red"})" "\n"
        R"({"id":"w",)" "\n");
    ASSERT_EQ(rows.size(), 5u);
    const auto& first = std::get<batch::MemberRow>(rows[0]);
    EXPECT_EQ(first.id, "5");
    EXPECT_EQ(first.N, -100.0);
    EXPECT_EQ(std::get<batch::RowError>(rows[1]).message, "a number outside the range of a double");
    EXPECT_EQ(std::get<batch::RowError>(rows[2]).field, "N");
    EXPECT_EQ(std::get<batch::RowError>(rows[3]).field, "colour");
    EXPECT_EQ(std::get<batch::RowError>(rows[4]).message, "not a JSON object");
}

} // namespace
