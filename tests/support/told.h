// What a user was told, a line each, for the texts that it is compared with.
#pragma once

#include <string>
#include <utility>

#include "tests/support/procedures.h"

/// The parts of the main window whose texts are told, by their names there.
inline constexpr std::pair<platform::Control, const char*> ToldControls[] = {
    {platform::Control::Status, "status"},       {platform::Control::Action, "action"},
    {platform::Control::Component, "component"}, {platform::Control::LongMessage, "long text"},
    {platform::Control::Progress, "progress"},   {platform::Control::Continue, "button"},
    {platform::Control::Cancel, "cancel button"}};

/// The text with another part for each of these.
std::string Replaced(std::string text, const std::string& from, const std::string& to);
/// On one line.
std::string OnOneLine(const std::string& text);
/// An entry of a log as "mark | text".
std::string ToldRow(const LogRow& row);
/// A status area shows all that it was told; its last line is the new one.
std::string LastLine(const std::string& text);
/// The lines of a host's file; none where it is missing.
Names FileLines(const std::string& path);
/// Writes lines beside the temporary files of the tests, for a person to read and to put in their place; the file's
/// path.
std::string LeaveToRead(const std::string& name, const Names& lines);
