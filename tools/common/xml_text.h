// Text written into XML files (the SVG plots, the VTK export): the characters XML reserves
// made harmless.
#pragma once

#include <string>

namespace odbs::tools {

// What xmlEscape does with a dash.
enum class XmlDashes {
  kKeep,         // text and attribute values: a dash is a dash
  kCommentSafe,  // "--" may not stand inside a comment: "a--b" becomes "a- -b"
};

// text with & < > " as entities and control characters (not allowed in XML 1.0 text) as
// spaces; with XmlDashes::kCommentSafe a dash that follows a dash gets a space before it.
std::string xmlEscape(const std::string& text, XmlDashes dashes = XmlDashes::kKeep);

}  // namespace odbs::tools
