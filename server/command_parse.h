// Parsing of the command lines that carry arguments. Pure functions over one line (a
// zero-terminated text without its newline); numbers convert like atoi/sscanf, so a bad
// number becomes 0 and nothing is rejected.
#pragma once

#include <optional>
#include <string>

#include "context/command_state.h"

namespace odbs {

// The text of line from character position pos, or "" when the line is shorter.
const char* lineFrom(const char* line, size_t pos);

// D / d: "%d %d %d %s" from position 1, position code remapped, '^' turned into spaces.
RequestParams parseRequest(const char* line, bool defined);

// a: "%d" from position 1. n >= 1 gives an empty list of capacity n; anything else no list.
void resetSelection(const char* line, SelectionList* list);

// b: labels from position 1, split at single spaces, appended while the list has room.
void appendSelection(const char* line, SelectionList* list);

// irc: "%d %d %s" from position 3. Returns nothing when the kind is outside 1..8 or the
// word is missing; otherwise the text runs from the word's first occurrence to the end.
std::optional<Criterion> parseCriterion(const char* line);

// rl: "%d %d" from position 2 into the pair; the database name follows the first comma at
// or after position 3. Returns nothing when there is no comma.
std::optional<std::string> parseSectionPointRequest(const char* line, SectionPointPair* pair);

// rn / rg: the first word from position 3 as A:B:database. Returns nothing when the word
// holds no colon. Without a second colon B is empty and the rest is the database name.
std::optional<RegionRequest> parseRegionWord(const char* line, bool byName);

// hr: the number from position 3 and the name after the first space that follows it.
void parseHistoryRegion(const char* line, int* number, std::string* name);

}  // namespace odbs
