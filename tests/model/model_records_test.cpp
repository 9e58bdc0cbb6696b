// Decoders of the model records on bodies that the server's handlers do not produce in
// the other tests: long type names, inconsistent bodies.
#include "client/model_records.h"

#include <gtest/gtest.h>

#include "client/client_error.h"
#include "tests/model/model_fixture.h"

namespace odbs::test {
namespace {

using client::DecodeError;

TEST(ModelRecordDecoders, ElementTypeNamesOfAnyLength) {
  for (const std::string name : {"T3D2", "C3D8", "C3D20RHT", "SPRINGA12", "ABCDEFGHIJ",
                                 "ABCDEFGHIJK", "ABCDEFGHIJKLM", "ABCDEFGHIJKLMNOPQ"}) {
    std::string padded = name.size() < 8 ? name + std::string(8 - name.size(), ' ') : name;
    client::ElementRecord e =
        client::decodeElement(Frames(4).raw(padded).i32(7).i32(2).i32(11).i32(12).record());
    EXPECT_EQ(e.type, name);
    EXPECT_EQ(e.label, 7);
    EXPECT_EQ(e.section, 2);
    EXPECT_EQ(e.nodes, (std::vector<int32_t>{11, 12}));
  }
}

TEST(ModelRecordDecoders, ConnectorElementsCarryCountAndZeros) {
  client::ElementRecord e = client::decodeElement(
      Frames(4).raw("CONN3D2 ").i32(1).i32(0).i32(2).i32(5).i32(6).i32(0).i32(0).record());
  EXPECT_TRUE(e.connector);
  EXPECT_EQ(e.nodes, (std::vector<int32_t>{5, 6}));
  EXPECT_THROW(
      client::decodeElement(Frames(4).raw("CONN3D2 ").i32(1).i32(0).i32(3).i32(5).i32(0).record()),
      DecodeError);
}

TEST(ModelRecordDecoders, MaterialElasticPresenceFollowsTheBody) {
  client::MaterialRecord plain =
      client::decodeMaterial(Frames(17).text("M").f32(2).i32(0).i32(1).record());
  EXPECT_FALSE(plain.hasElastic);
  EXPECT_TRUE(plain.acoustic);
  // An elastic behaviour with an empty type name still carries its values.
  Frames f(17);
  f.text("E").f32(0).text("");
  for (int i = 0; i < 6; ++i) f.f32(float(i));
  client::MaterialRecord empty = client::decodeMaterial(
      f.i32(1).f32(1).f32(2).f32(3).f32(4).f32(5).f32(6).f32(7).i32(-1).i32(0).record());
  EXPECT_TRUE(empty.hasElastic);
  EXPECT_TRUE(empty.hasFailStress);
  EXPECT_FALSE(empty.hasFailStrain);
  EXPECT_EQ(empty.failStress.back(), 7.f);
  EXPECT_THROW(client::decodeMaterial(Frames(17).text("M").f32(2).i32(0).i32(7).record()),
               DecodeError);
}

TEST(ModelRecordDecoders, MalformedBodiesAreRejected) {
  EXPECT_THROW(client::decodeNode(Frames(3).i32(1).record()), DecodeError);
  EXPECT_THROW(client::decodeSection(Frames('$').i32(1).text("S").i32(-6).record()), DecodeError);
  EXPECT_THROW(client::decodeSection(Frames('$').i32(1).text("S").i32(0).i32(0).record()),
               DecodeError);
  Frames big(8);
  for (int i = 0; i < 31; ++i) big.i32(i);
  EXPECT_THROW(client::decodeLabelBlock(big.record()), DecodeError);
  EXPECT_THROW(client::decodeFaceBlock(Frames(10).i32(1).record()), DecodeError);
  EXPECT_THROW(client::decodeSetEnd(Frames(11).i32(0).record()), DecodeError);
  EXPECT_THROW(client::decodeTitle(Frames(2).text("x").record()), DecodeError);
}

}  // namespace
}  // namespace odbs::test
