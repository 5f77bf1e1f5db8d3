#pragma once

#include "../common/JsonStream.h"
#include "../common/Palette.h"
#include "FindingList.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace MoxTool {

/// The result of checking one file. The numbers are exit codes.
enum class Verdict : int { Whole = 0, Warnings = 1, Errors = 2, Unreadable = 3 };

/// @param strict Whether warnings count as errors.
Verdict judge(const FindingList& findings, bool strict);

// Both forms name the file first, then each finding, then how many findings of a rule are not listed.

/// Prints a line for each finding.
void printFindings(std::FILE* out, const std::string& path, const FindingList& findings,
                   const Palette& palette);

/// Prints the verdict on a file in a line.
void printVerdict(std::FILE* out, const std::string& path, const FindingList& findings);

/// What the table of several files says of one of them.
struct FileVerdict {
    std::string path;
    Verdict verdict;
    std::uint64_t errors = 0; ///< Without meaning for a file that can't be read, as are the other counts.
    std::uint64_t warnings = 0;
    std::uint64_t notes = 0;

    FileVerdict(const std::string& file, Verdict result, const FindingList& findings);
};

/// Prints a table with a row for each file.
void printTable(std::FILE* out, const std::vector<FileVerdict>& files);

/// Writes the report as an object.
void printReport(JsonStream& out, const std::string& path, const FindingList& findings, Verdict verdict);

/// Writes the object for a file that could not be read.
void printUnreadable(JsonStream& out, const std::string& path, const std::string& reason);

/// Prints the table of rules.
void printRules(std::FILE* out);
void printRules(JsonStream& out);

} // namespace MoxTool
