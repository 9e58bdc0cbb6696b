// sendRegionField: commands rn and rg, the field output of one frame over two regions (the
// two surfaces of a contact pair or tie, or two sets named by the client).
#include <array>
#include <string>
#include <vector>

#include "odb/odb.h"
#include "results/block_values.h"
#include "results/field_classify.h"
#include "results/field_walk.h"
#include "results/region_table.h"
#include "results/requested_frame.h"
#include "results/result_header.h"
#include "results/results.h"

namespace odbs {

namespace {

constexpr int32_t kNoSectionPoint = -1;

// Suffix codes of the region word.
constexpr int32_t kInner = -1;     // lowest section point of each element
constexpr int32_t kOuter = -2;     // highest
constexpr int32_t kExtremes = -3;  // both: lowest, then highest

// One side of the reply: a region found for A (side 1) or B (side 2).
struct Side {
  int32_t side = 1;
  int32_t code = 0;
  Region region;
  std::string pair;  // the region pair it came from; empty when named directly
  int32_t pairKind = 0;
};

// Resolves A and B of the region word; sends a message for each that finds nothing.
std::vector<Side> resolveSides(OdbContext& ctx, const RegionRequest& r, ReplyChannel& out) {
  const RegionPairTable& table = regionPairTable(ctx);
  std::vector<Side> sides;
  // A takes the first region of a pair, B the second.
  auto add = [&](int32_t side, int32_t code, const odb::RegionPairData* pair,
                 const std::string& name) {
    const std::string& regionName = pair ? (side == 1 ? pair->first : pair->second) : name;
    std::optional<Region> region = findRegion(*ctx.odb, regionName);
    if (!region) {
      out.sendText("Unknown region: " + regionName);
      return;
    }
    sides.push_back(
        {side, code, std::move(*region), pair ? pair->name : "", pair ? pair->kind : 0});
  };
  if (r.byName) {
    const odb::RegionPairData* pairA = pairNamed(table, r.nameA);
    add(1, r.codeA, pairA, r.nameA);
    if (!r.nameB.empty())
      add(2, r.codeB, pairNamed(table, r.nameB), r.nameB);
    else if (pairA != nullptr)
      add(2, r.codeB, pairA, "");
    return sides;
  }
  auto pairNumber = [&](int32_t k) -> const odb::RegionPairData* {
    if (k < 1 || static_cast<size_t>(k) > table.pairs.size()) {
      out.sendText("Unknown region pair: " + std::to_string(k));
      return nullptr;
    }
    return &table.pairs[static_cast<size_t>(k) - 1];
  };
  const odb::RegionPairData* pairA = pairNumber(r.numberA);
  if (pairA != nullptr) add(1, r.codeA, pairA, "");
  const odb::RegionPairData* pairB = r.numberB == 0 ? pairA : pairNumber(r.numberB);
  if (pairB != nullptr) add(2, r.codeB, pairB, "");
  return sides;
}

void queueRegion(const Side& s, ReplyChannel& out) {
  out.queue(RecordBuilder(kRecRegion)
                .i32(s.side)
                .i32(s.code)
                .i32(s.region.kind)
                .text(s.region.name)
                .text(s.region.instance)
                .text(s.pair)
                .i32(s.pairKind));
}

// The value records of one side: the blocks of the field restricted to the region's places,
// with the section points that the side's suffix code picks.
class SideSender {
 public:
  SideSender(const InstanceNumbering& instances, const Side& side, bool upperCase, bool defined,
             ReplyChannel& out)
      : instances_(instances),
        side_(side),
        upperCase_(upperCase),
        defined_(defined),
        out_(out),
        stream_(out),
        headers_(instances.multiInstance()) {}

  void send(const odb_FieldOutput& field) {
    odb_SequenceFieldBulkData blocks = field.bulkDataBlocks();
    const int32_t code = side_.code;
    if (code < 0) {
      fillSectionRanges(blocks, ranges_);
      ranges_.setFrozen(true);
    }
    // Pass 0 takes every section point asked for; passes 1 and 2 the lowest and highest.
    std::vector<int> passes = code == kInner      ? std::vector<int>{1}
                              : code == kOuter    ? std::vector<int>{2}
                              : code == kExtremes ? std::vector<int>{1, 2}
                                                  : std::vector<int>{0};
    for (int pass : passes)
      for (int i = 0; i < blocks.size(); ++i)
        block(blocks[i], field.isComplex(), pass, pass == passes.front());
    blocks.clearAll();
  }

 private:
  void block(const odb_FieldBulkData& b, bool complex, int pass, bool firstPass) {
    auto at = side_.region.places.find(b.instance().name());
    if (at == side_.region.places.end()) return;
    const RegionPlaces& places = at->second;
    const int32_t sp = b.sectionPoint().number();
    const bool nodal = b.elementLabels() == nullptr;
    const bool layered = !nodal && sp != kNoSectionPoint;
    // Nodal blocks and blocks without section points are sent whole, once.
    if (!layered && !firstPass) return;
    if (layered && side_.code > 0 && sp != side_.code) return;
    const int32_t tag = !layered ? -1 : pass != 0 ? pass : side_.code > 0 ? 1 : sp;

    BlockArrays a = BlockArrays::of(b.blockData(), complex, upperCase_);
    auto take = [&](size_t r) {
      if (nodal) return a.nodes != nullptr && places.hasNode(a.nodes[r]);
      if (!places.hasElement(a.elements[r])) return false;
      if (pass == 0 || !layered) return true;
      const SectionRange* range = ranges_.find(a.elements[r]);
      return range != nullptr && (pass == 1 ? range->lowest : range->highest) == sp;
    };
    PlaceFilter filter{defined_ ? &places_ : nullptr, static_cast<int16_t>(sp),
                       instances_.numberOf(b.instance().name())};
    bool opened = false;
    size_t runStart = 0;
    bool inRun = false;
    for (size_t r = 0; r <= a.rows; ++r) {
      bool wanted = r < a.rows && take(r);
      if (wanted && !inRun) runStart = r;
      if (!wanted && inRun) {
        if (!opened) {
          headers_.enter(b.instance().name(), out_);
          stream_.dataClass(dataClassOfBlock(b.type(), b.width()));
          stream_.elementType(b.baseElementType(), tag, sp);
          opened = true;
        }
        sendRows(stream_, a, runStart, r, filter);
      }
      inRun = wanted;
    }
  }

  const InstanceNumbering& instances_;
  const Side& side_;
  bool upperCase_, defined_;
  ReplyChannel& out_;
  ValueStream stream_;
  InstanceHeaders headers_;
  PlaceSet places_;
  LabelTable ranges_;
};

}  // namespace

void sendRegionField(OdbContext& ctx, const RequestParams& request, bool upperCase,
                     const RegionRequest& region, ReplyChannel& out) {
  const odb_Odb& odb = *ctx.odb;
  sendResultHeader(odb, out);
  std::vector<Side> sides = resolveSides(ctx, region, out);
  try {
    // The field of the request's step and frame, or none; a step or frame that does not
    // exist throws std::out_of_range.
    const odb_FieldOutput* field = request.param1 < 1
                                       ? nullptr
                                       : requestedFrame(odb, request.param1, request.param2)
                                             .frame.fieldOutputs()
                                             .find(request.text);
    InstanceNumbering instances(odb);
    for (const Side& side : sides) {
      queueRegion(side, out);
      if (field != nullptr)
        SideSender(instances, side, upperCase, request.defined, out).send(*field);
    }
  } catch (...) {
    // As in the field walk: a walk that failed half way sends nothing of its values.
    out.discardPending();
    throw;
  }
  out.flush();
}

}  // namespace odbs
