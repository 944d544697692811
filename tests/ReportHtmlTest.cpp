// The HTML report's building blocks: escaping of every text from outside, the ticks of the charts, and
// what the page says of rows that were rejected or gave a utilization that is not finite.

#include <report/HtmlReport.h>
#include <report/InputHash.h>
#include <report/TitleBlock.h>

#include "CommandRunner.h"
#include <batch/OutputFile.h>
#include <design/InputError.h>
#include <report/Svg.h>

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using namespace batch;
using namespace report;

ReportHeader headerOf(const std::string& model)
{
    ReportHeader h;
    h.title = "t";
    h.model = model;
    h.date = "2026-11-24";
    return h;
}

TEST(ReportHtml, TextsFromOutsideAreEscaped)
{
    EXPECT_EQ(htmlEscape("<script>alert('x')</script> & \"y\""),
              "&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt; &amp; &quot;y&quot;");
    // A member id from a batch file cannot open an element of its own in the page.
    std::istringstream in("id,section,steel,N,My,Mz,Mt,Vy,Vz,length\n"
                          "\"<img src=x onerror=alert(1)>\",IPE 300,S355,-100,50,0,0,0,20,4\n");
    BatchReader reader(in);
    std::vector<BatchRow> rows;
    ASSERT_TRUE(reader.next(rows, 10));
    std::vector<ReportMember> members{reportMember(rows[0])};
    std::ostringstream page;
    writeReport(page, headerOf("m.csv"), members, 1);
    EXPECT_EQ(page.str().find("<img"), std::string::npos);
    EXPECT_NE(page.str().find("&lt;img src=x onerror=alert(1)&gt;"), std::string::npos);
}

void expectTicks(const std::vector<double>& ticks, const std::vector<double>& expected)
{
    ASSERT_EQ(ticks.size(), expected.size());
    for (std::size_t i = 0; i < ticks.size(); ++i) EXPECT_NEAR(ticks[i], expected[i], 1e-12 * (1.0 + std::fabs(expected[i])));
}

// The step nearest to range / count among 1, 2 and 5 times a power of ten: 1.2 / 5 = 0.24 -> 0.2;
// 2529 / 5 = 506 -> 500; 2.5 / 5 = 0.5.
TEST(ReportHtml, TicksFallOnRoundValues)
{
    expectTicks(niceTicks(0.0, 1.2, 5), {0.0, 0.2, 0.4, 0.6, 0.8, 1.0, 1.2});
    expectTicks(niceTicks(-1264.5, 1264.5, 5), {-1000.0, -500.0, 0.0, 500.0, 1000.0});
    expectTicks(niceTicks(0.0, 2.5, 5), {0.0, 0.5, 1.0, 1.5, 2.0, 2.5});
    EXPECT_TRUE(niceTicks(1.0, 1.0, 5).empty());
    EXPECT_EQ(chartNumber(12.50, 2), "12.5");
    EXPECT_EQ(chartNumber(-0.04, 1), "0");
    EXPECT_EQ(chartNumber(300.0, 1), "300");
}

// A rejected row keeps its line, field and message and has no bar; the counts say how many.
TEST(ReportHtml, RejectedRowsAreListedWithTheirReasonAndHaveNoBar)
{
    std::istringstream in("id,section,steel,N,My,Mz,Mt,Vy,Vz,length\n"
                          "A,IPE 300,S355,-100,50,0,0,0,20,4\n"
                          "B,IPE 999,S355,-100,50,0,0,0,20,4\n");
    BatchReader reader(in);
    std::vector<BatchRow> rows;
    ASSERT_TRUE(reader.next(rows, 10));
    std::vector<ReportMember> members;
    for (const BatchRow& row : rows) members.push_back(reportMember(row));
    ASSERT_TRUE(members[1].result.rejected);
    std::ostringstream out;
    writeReport(out, headerOf("m.csv"), members, 2);
    const std::string page = out.str();
    EXPECT_NE(page.find("data-count=\"rejected\">rejected 1<"), std::string::npos);
    EXPECT_NE(page.find("<p class=\"rejected\">line 3: section: "), std::string::npos);
    EXPECT_NE(page.find("data-member=\"A\" data-verdict"), std::string::npos);  // A's bar
    EXPECT_EQ(page.find("class=\"bar rejected\""), std::string::npos);
}

// The report of a member equals a batch row of the same inputs: one evaluation for both.
TEST(ReportHtml, MemberOfTheCommandsEqualsTheBatchRow)
{
    std::istringstream in("id,section,steel,N,My,Mz,Mt,Vy,Vz,length,MyStart,MyMid,MyEnd\n"
                          "A,HEB 300,S235,-900,120,0,0,0,40,6,0,60,120\n");
    BatchReader reader(in);
    std::vector<BatchRow> rows;
    ASSERT_TRUE(reader.next(rows, 10));
    const ReportMember fromRow = reportMember(rows[0]);
    ASSERT_TRUE(fromRow.member);
    const ReportMember direct = reportMember(2, "A", fromRow.section, fromRow.steel, fromRow.cross, fromRow.member);
    EXPECT_EQ(direct.result.governingUtilization, fromRow.result.governingUtilization);
    EXPECT_EQ(direct.result.governing, fromRow.result.governing);
    EXPECT_EQ(direct.result.verdict, fromRow.result.verdict);
    for (std::size_t i = 0; i < direct.result.member.size(); ++i)
        EXPECT_EQ(direct.result.member[i].valueOr(-1.0), fromRow.result.member[i].valueOr(-1.0));
}

TEST(OutputFile, WritesThroughATemporaryAndRefusesTheInput)
{
    const auto dir = std::filesystem::temp_directory_path() / "steeldesign-output-file-test";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    const std::string input = (dir / "model.csv").string(), target = (dir / "out.html").string();
    std::ofstream(input) << "id\n";
    std::filesystem::create_symlink(input, dir / "link.csv");
    EXPECT_THROW(checkOutputPath("--out", input, input), InputError);
    EXPECT_THROW(checkOutputPath("--out", (dir / "link.csv").string(), input), InputError);
    EXPECT_THROW(checkOutputPath("--out", dir.string(), input), InputError);
    EXPECT_NO_THROW(checkOutputPath("--out", target, input));
    writeFileAtomically("--out", target, "<p>report</p>");
    std::ifstream written(target);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(written), {}), "<p>report</p>");
    std::size_t entries = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) entries += entry.path().filename() != "" ? 1 : 0;
    EXPECT_EQ(entries, 3u);  // model.csv, link.csv, out.html: no temporary left
    // A file that cannot be written names the option and leaves nothing behind.
    EXPECT_THROW(writeFileAtomically("--html", (dir / "missing" / "r.html").string(), "x"), InputError);
    std::filesystem::remove_all(dir);
}

} // namespace

// FIPS 180-4 examples: "abc" and the 448-bit message; a million 'a' crosses many blocks.
TEST(ReportInputHash, Sha256OfTheStandardsExamples)
{
    EXPECT_EQ(report::sha256Hex("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(report::sha256Hex(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(report::sha256Hex("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    std::istringstream million(std::string(1000000, 'a'));
    EXPECT_EQ(report::sha256Hex(million).value_or(""),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
    // Through a reader: the digest of the bytes it took, line by line, to the end.
    std::istringstream source(std::string(300000, 'a'));
    report::HashedInput hashed(source);
    std::string line, read;
    std::getline(hashed.stream(), line, 'x');
    EXPECT_EQ(line.size(), 300000u);
    EXPECT_EQ(hashed.hex(), report::sha256Hex(std::string(300000, 'a')));
    EXPECT_EQ(hashed.hex(), hashed.hex());  // asking twice changes nothing
}

// A title block's text cannot close the style sheet or a string of it, nor open an element of the page.
TEST(ReportHtml, TitleBlockTextsAreEscapedInThePageAndItsPageFrame)
{
    ReportHeader h = headerOf("m.csv");
    h.block.project = "</style><script>alert(1)</script>\"}\\\nx";
    h.block.element = "<b>E</b>";
    std::ostringstream page;
    writeReport(page, h, {}, 1);
    const std::string text = page.str();
    EXPECT_EQ(text.find("<script>alert"), std::string::npos);
    EXPECT_EQ(text.find("</style><script>"), std::string::npos);
    EXPECT_EQ(text.find("<b>E</b>"), std::string::npos);
    EXPECT_NE(text.find("&lt;/style&gt;&lt;script&gt;alert(1)&lt;/script&gt;"), std::string::npos);
    EXPECT_EQ(report::cssString("a\"b\\c\nd<e"), "\"a\\\"b\\\\c\\A d\\3C e\"");
    // One style element: the page frame's strings stay inside it.
    EXPECT_EQ(text.find("</style>"), text.rfind("</style>"));
}

// A title-block file: its fields, the options over them; every bad line refused naming the file and the line.
TEST(ReportTitleBlock, FileFieldsAndTheirErrors)
{
    std::istringstream good("# sheet of job 17\nproject: Hall 7\n  prepared :  J. Smith  \n\nrevision: A\n");
    const report::TitleBlock b = report::readTitleBlock(good, "tb.txt");
    EXPECT_EQ(b.project, "Hall 7");
    EXPECT_EQ(b.prepared, "J. Smith");
    EXPECT_EQ(b.revision, "A");
    EXPECT_EQ(b.checked, "");
    report::TitleBlock options;
    options.revision = "B";
    const report::TitleBlock both = report::overlaid(b, options);
    EXPECT_EQ(both.revision, "B");
    EXPECT_EQ(both.project, "Hall 7");

    const auto error = [](const std::string& text) {
        std::istringstream in(text);
        try {
            report::readTitleBlock(in, "tb.txt");
        } catch (const design::InputError& e) {
            return std::string(e.what());
        }
        return std::string("accepted");
    };
    EXPECT_EQ(error("project: X\nbogus: y\n"),
              "tb.txt: line 2: unknown field 'bogus' (project, element, client, prepared, checked, approved, revision)");
    EXPECT_EQ(error("project X\n"), "tb.txt: line 1: expected 'field: value', got 'project X'");
    EXPECT_EQ(error("project: X\nproject: Y\n"), "tb.txt: line 2: the field 'project' is given twice");
    EXPECT_EQ(error("project: " + std::string(600, 'x') + "\n"), "tb.txt: line 1: longer than 500 bytes");
    EXPECT_EQ(error(std::string(20000, '\0')), "tb.txt: larger than 16 KiB");

    // Through the command: a bad file is exit 2 before anything is written.
    const std::filesystem::path dir = std::filesystem::temp_directory_path() / "steeldesign-title-block-test";
    std::filesystem::create_directories(dir);
    std::ofstream(dir / "bad.txt") << "project: X\nbogus: y\n";
    const std::string out = (dir / "page.html").string();
    std::filesystem::remove(out);
    const CommandRun run = runSteeldesign("member \"IPE 300\" --N -10 --length 3 --html " + out + " --title-block " +
                                          (dir / "bad.txt").string());
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_NE(run.output.find("--title-block: "), std::string::npos);
    EXPECT_EQ(run.output.find("verdict"), std::string::npos);  // nothing printed before the refusal
    EXPECT_FALSE(std::filesystem::exists(out));
    std::filesystem::remove_all(dir);
}
