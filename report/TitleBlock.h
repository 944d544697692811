#pragma once

// The frame of a calculation sheet around the design report: the title block (project, element,
// client, prepared / checked / approved, revision, date, software and version, the input file and its
// SHA-256), the basis of design (EN 1993-1-1 with the national choices of the mode, the design
// situation, the partial factors' values, E, G) and the sign conventions, the running header and the
// "page x of y" footer of every printed page (CSS @page margin boxes), and the signature and revision
// block at the end. Fields not given are blank lines to fill in by hand.

#include "HtmlReport.h"

#include <istream>
#include <string>
#include <string_view>

namespace report {

// "steeldesign 0.1.0".
std::string softwareName();

// The title block and the basis of design, for the cover.
std::string titleBlockHtml(const ReportHeader& header);

// The @page rules with the running header and the page numbers of the printed sheet.
std::string pageFrameCss(const ReportHeader& header);

// The signatures (prepared, checked, approved: name, signature, date) and the revisions, for the end.
std::string signatureBlockHtml(const ReportHeader& header);

// The fields of a title-block file: a "field: value" line per field (project, element, client, prepared,
// checked, approved, revision), blank lines and lines starting with '#' left out. An unknown field, a
// line without ':', a field given twice or a line longer than 500 bytes is InputError naming the file
// (name) and the line.
TitleBlock readTitleBlock(std::istream& in, const std::string& name);

// The fields of over, where given, over those of base.
TitleBlock overlaid(const TitleBlock& base, const TitleBlock& over);

// A text as the content of a CSS string ("..."): quotes, backslashes, line ends and '<' escaped.
std::string cssString(std::string_view text);

} // namespace report
