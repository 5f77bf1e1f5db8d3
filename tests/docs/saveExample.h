#pragma once

#include <string>

/// Saves the model of docs/format/example.md.
void saveExample(const std::string& path);
