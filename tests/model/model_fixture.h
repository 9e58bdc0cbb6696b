// Running the model handlers on a database built by the test, and reading back what they
// wrote: the reply goes to an anonymous file and is split into records by the client's
// frame reader.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "client/record.h"
#include "context/odb_context.h"
#include "context/reply_channel.h"
#include "odb/model_data.h"
#include "tests/support/frames.h"
#include "tests/support/written_database.h"

namespace odbs::test {

// A database written from a model, open for the life of the object; damage, when given,
// runs on the written file before it is opened.
class TestDatabase : public WrittenDatabase {
 public:
  explicit TestDatabase(const odb::ModelData& model,
                        const std::function<void(const std::string& path)>& damage = {})
      : WrittenDatabase([&](odb::Writer& w) { odb::addModel(w, model); }, damage) {}
};

// Every byte that handler writes through its channel.
Bytes capture(const std::function<void(ReplyChannel&)>& handler);

// The records of a captured reply, in order.
std::vector<client::Record> splitRecords(const Bytes& bytes);

// One line per frame of a captured reply, in hexadecimal: failures show which record
// differs.
std::string frameLines(const Bytes& bytes);

// The type bytes of records, for checking the order of a reply at a glance.
std::string typeSequence(const std::vector<client::Record>& records);

// An element set, node set or surface of one instance's members.
odb::SetData setOf(const std::string& name, odb_Enum::odb_SetTypeEnum type,
                   const std::string& instance, const std::vector<int32_t>& labels,
                   const std::vector<int32_t>& faces = {});

// A node grid of count nodes labelled 1..count with 3 coordinates each.
odb::NodeData nodeLine(int count);

}  // namespace odbs::test
