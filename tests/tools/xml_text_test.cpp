// XML escaping shared by the SVG plots and the VTK export.
#include "tools/common/xml_text.h"

#include <gtest/gtest.h>

namespace odbs::tools {
namespace {

TEST(XmlText, ReservedAndControlCharactersAndDashes) {
  EXPECT_EQ(xmlEscape("a<b>&\"c\""), "a&lt;b&gt;&amp;&quot;c&quot;");
  EXPECT_EQ(xmlEscape("line\none\ttab"), "line one tab");
  // Plot labels keep their dashes; comments never hold "--", even from "---".
  EXPECT_EQ(xmlEscape("U--1"), "U--1");
  EXPECT_EQ(xmlEscape("U--1", XmlDashes::kCommentSafe), "U- -1");
  EXPECT_EQ(xmlEscape("---", XmlDashes::kCommentSafe), "- - -");
  EXPECT_EQ(xmlEscape("-", XmlDashes::kCommentSafe), "-");
}

}  // namespace
}  // namespace odbs::tools
