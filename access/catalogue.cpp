// The step and frame catalogue of command f: the analysis title and code, then for every
// frame of every step the records 12 (step), 13 (procedure), 14 (step texts) and 15
// (frame). Each value sent is mirrored into the cache file, so that an unchanged database
// is answered from the file without walking its frames.
#include "access/catalogue.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "access/catalogue_base.h"
#include "access/catalogue_file.h"
#include "access/database_book.h"
#include "access/frame_records.h"
#include "odb/odb.h"

namespace odbs {

namespace {

// Framed records gathered in memory: a replayed reply is composed whole before its first
// byte is written. Kept in blocks, so that growing never copies what is already there.
class ReplyImage {
 public:
  void queue(const RecordBuilder& rec) {
    if (rec.malformed()) throw std::length_error("catalogue record does not fit in one frame");
    size_t framed = kFrameHeaderSize + rec.size();
    if (blocks_.empty() || kBlockSize - blocks_.back().size() < framed) {
      blocks_.emplace_back();
      blocks_.back().reserve(std::max(kBlockSize, framed));
    }
    uint8_t count[kFrameHeaderSize];
    putU16(count, static_cast<uint16_t>(rec.size()));
    std::string& b = blocks_.back();
    b.append(reinterpret_cast<const char*>(count), kFrameHeaderSize);
    b.append(reinterpret_cast<const char*>(rec.data()), rec.size());
  }
  void writeTo(ReplyChannel& out) const {
    for (const std::string& b : blocks_) out.writeBytes(b.data(), b.size());
  }

 private:
  static constexpr size_t kBlockSize = 1 << 20;
  std::vector<std::string> blocks_;
};

void mirrorFrame(const FrameRecords& f, CatalogueWriter& w) {
  w.integer(f.stepNumber);
  w.real(f.totalTime);
  w.text(f.stepText);
  w.text(f.procedure);
  w.text(f.text1);
  w.text(f.text2);
  w.integer(f.frameIndex);
  w.integer(f.domain);
  w.integer(f.mode);
  w.real(f.frameValue);
  w.real(f.frequency);
  w.integer(f.entry1);
  w.integer(f.entry2);
  w.text(f.description);
}

bool readInt(CatalogueReader& r, int32_t* v) {
  int64_t x;
  if (!r.integer(&x) || x < INT32_MIN || x > INT32_MAX) return false;
  *v = static_cast<int32_t>(x);
  return true;
}

bool readFrame(CatalogueReader& r, FrameRecords* f) {
  return readInt(r, &f->stepNumber) && r.real(&f->totalTime) && r.text(&f->stepText) &&
         r.text(&f->procedure) && r.text(&f->text1) && r.text(&f->text2) &&
         readInt(r, &f->frameIndex) && readInt(r, &f->domain) && readInt(r, &f->mode) &&
         r.real(&f->frameValue) && r.real(&f->frequency) && readInt(r, &f->entry1) &&
         readInt(r, &f->entry2) && r.text(&f->description);
}

// Replays a cache file. The file is read to its end, in one pass, into the framed records
// of the reply before anything is written, so a file damaged half-way sends nothing and the
// caller builds instead.
bool replay(CatalogueReader& r, ReplyChannel& out) {
  std::string title;
  int32_t code = 0;
  if (!r.text(&title) || !readInt(r, &code)) return false;
  ReplyImage frames;
  FrameRecords f;  // one set of strings, reused frame after frame
  while (!r.atEnd()) {
    if (!readFrame(r, &f)) return false;
    queueFrame(f, frames);
  }
  out.send(RecordBuilder(kRecTitle).text(title));
  out.send(RecordBuilder(kRecAnalysisCode).i32(code));
  out.discardPending();
  frames.writeTo(out);
  return true;
}

// Walks every frame of every step, sending and mirroring its records.
void build(odb_Odb& odb, DatabaseRecord* record, CatalogueWriter& w, ReplyChannel& out) {
  std::string title = catalogueTitle(odb);
  int32_t code = odb.jobData().analysisCode() - 1;
  out.send(RecordBuilder(kRecTitle).text(title));
  out.send(RecordBuilder(kRecAnalysisCode).i32(code));
  w.text(title);
  w.integer(code);

  std::vector<CatalogueStepEntry> entries;
  out.discardPending();
  const odb_StepRepository& steps = odb.steps();
  for (int s = 0; s < steps.size(); ++s) {
    const odb_Step& step = steps.at(s);
    const odb_SequenceFrame& frames = step.frames();
    CatalogueStepEntry entry{s + 1, frames.size()};
    entries.push_back(entry);

    FrameRecords f;
    setStepFields(step, entry.stepNumber, entry.frameCount, &f);
    for (int i = 0; i < frames.size(); ++i) {
      setFrameFields(frames[i], &f);
      queueFrame(f, out);
      mirrorFrame(f, w);
    }
  }
  out.flush();
  if (record != nullptr) record->catalogueSteps = std::move(entries);
}

}  // namespace

void sendCatalogue(OdbContext& ctx, int mode, ReplyChannel& out) {
  BaseNameClearer clearer;
  std::string base = catalogueBaseName();
  odb_Odb& odb = *ctx.odb;
  platform::FileStat dbStat;
  platform::statFile(odb.path(), &dbStat);

  if (!base.empty()) {
    CatalogueReader reader;
    if (reader.open(base, mode, dbStat)) {
      if (replay(reader, out)) return;
      platform::removeFile(base);
    }
  }
  DatabaseRecord* record = nullptr;
  for (auto& [key, r] : databaseBook().records)
    if (r.context.odb == ctx.odb) record = &r;

  CatalogueWriter writer(base);
  writer.header(mode, odb.path(), dbStat);
  build(odb, record, writer, out);
  writer.finish();
}

}  // namespace odbs
