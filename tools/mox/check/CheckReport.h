#pragma once

#include "../common/JsonStream.h"
#include "../common/Palette.h"
#include "FindingList.h"

#include <cstdio>
#include <string>

namespace MoxTool {

/// The result of checking one file. The numbers are exit codes.
enum class Verdict : int { Whole = 0, Warnings = 1, Errors = 2, Unreadable = 3 };

/// @param strict Whether warnings count as errors.
Verdict judge(const FindingList& findings, bool strict);

// Both forms name the file first, then each finding, then how many findings of a rule are not listed.

/// Prints a line for each finding and one for the verdict.
void printReport(std::FILE* out, const std::string& path, const FindingList& findings,
                 const Palette& palette);

/// Writes the report as an object.
void printReport(JsonStream& out, const std::string& path, const FindingList& findings, Verdict verdict);

/// Writes the object for a file that could not be read.
void printUnreadable(JsonStream& out, const std::string& path, const std::string& reason);

/// Prints the table of rules.
void printRules(std::FILE* out);
void printRules(JsonStream& out);

} // namespace MoxTool
