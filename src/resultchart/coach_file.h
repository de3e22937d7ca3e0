#pragma once

#include <QString>
#include <string>

#include "progress/coach_report.h"

namespace velumar {

// The report as one page for a browser: see results/html_text.h. Pictures are SVG if the toolkit
// can write it, else PNG, in the colours of a light and of a dark page.
std::string CoachWebPage(const CoachReport& report);

// Saves the report as .html or as .pdf, on upright A4, all but the pictures of charts as vectors;
// see SaveWhole. Throws std::runtime_error with the file's name.
void SaveCoachReport(const CoachReport& report, const QString& file);

}  // namespace velumar
