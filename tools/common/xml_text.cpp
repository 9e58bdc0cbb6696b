#include "tools/common/xml_text.h"

namespace odbs::tools {

std::string xmlEscape(const std::string& text, XmlDashes dashes) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '-':
        out += dashes == XmlDashes::kCommentSafe && !out.empty() && out.back() == '-' ? " -" : "-";
        break;
      default:
        out += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
    }
  }
  return out;
}

}  // namespace odbs::tools
