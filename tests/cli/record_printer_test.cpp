#include "tools/cli/record_printer.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/bytes.h"

namespace odbs::cli {
namespace {

using client::Record;
using client::ReplyKind;

// One reply holding a known record, an unknown one and a known one whose body is broken.
std::string print(OutputFormat format) {
  std::ostringstream out;
  auto printer = makePrinter(format, out, client::standardCatalog());
  printer->beginReply("p", {ReplyKind::kUntilEnd});
  printer->record(Record{'|', odbs::test::textBody("a \"q\"\n")});
  printer->record(Record{3, {0x01, 0xAB}});
  printer->record(Record{'}', {1, 2}});
  printer->record(Record{'~', {}});
  printer->endReply(std::nullopt);
  printer->error("time-out");
  printer->finish();
  return out.str();
}

TEST(RecordPrinter, TextShowsDecodedFieldsElseHex) {
  std::string text = print(OutputFormat::kText);
  EXPECT_NE(text.find("124 '|'  count 11  message  text=\"a \\\"q\\\"\\u000a\""), std::string::npos)
      << text;
  EXPECT_NE(text.find("3  count 3  hex: 01 ab"), std::string::npos) << text;
  EXPECT_NE(text.find("process-id record: body of 2 bytes"), std::string::npos) << text;
  EXPECT_NE(text.find("error: time-out"), std::string::npos) << text;
}

TEST(RecordPrinter, JsonIsOneArrayOfReplies) {
  std::string json = print(OutputFormat::kJson);
  EXPECT_EQ(json.front(), '[');
  EXPECT_EQ(json.substr(json.size() - 3), "\n]\n");
  EXPECT_NE(json.find("\"fields\": {\"text\": \"a \\\"q\\\"\\u000a\"}"), std::string::npos) << json;
  EXPECT_NE(json.find("{\"type\": 3, \"count\": 3, \"hex\": \"01 ab\"}"), std::string::npos)
      << json;
  EXPECT_NE(json.find("\"decodeError\""), std::string::npos) << json;
  EXPECT_NE(json.find("{\"error\": \"time-out\"}"), std::string::npos) << json;
}

TEST(RecordPrinter, JsonStringEscapesEveryByteOutsidePrintableAscii) {
  EXPECT_EQ(jsonString(std::string("a\\b\0\x7f\xe9", 6)), "\"a\\\\b\\u0000\\u007f\\u00e9\"");
}

}  // namespace
}  // namespace odbs::cli
