#pragma once

// The frame of a calculation sheet around the design report: the title block (project, element,
// client, prepared / checked / approved, revision, date, software and version, the input file and its
// SHA-256), the basis of design (EN 1993-1-1 with the national choices of the mode, the design
// situation, the partial factors' values, E, G) and the sign conventions, the running header and the
// "page x of y" footer of every printed page (CSS @page margin boxes), and the signature and revision
// block at the end. Fields not given are blank lines to fill in by hand.

#include "HtmlReport.h"

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

// A text as the content of a CSS string ("..."): quotes, backslashes, line ends and '<' escaped.
std::string cssString(std::string_view text);

} // namespace report
