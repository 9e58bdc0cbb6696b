// Thin checked wrappers over the HDF5 C library: one wrapper per call family, each of
// which checks the result and throws std::runtime_error naming the object and the
// operation. HDF5's own error-stack printing is switched off once (silenceErrors), so a
// damaged file produces one clear exception and nothing on standard error.
//
// Handles are move-only and close themselves. Bulk arrays are read with one H5Dread each.
#pragma once

#include <hdf5.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace odb::h5 {

// Turns off HDF5's automatic error printing for the whole process. Idempotent.
void silenceErrors();

[[noreturn]] void fail(const std::string& what);

// Owns one HDF5 identifier and closes it with the matching close call.
class Handle {
 public:
  Handle() = default;
  explicit Handle(hid_t id) : id_(id) {}
  Handle(Handle&& o) noexcept : id_(o.id_) { o.id_ = H5I_INVALID_HID; }
  Handle& operator=(Handle&& o) noexcept;
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { reset(); }
  hid_t id() const { return id_; }
  bool valid() const { return id_ >= 0; }
  void reset();
  hid_t release() {
    hid_t id = id_;
    id_ = H5I_INVALID_HID;
    return id;
  }

 private:
  hid_t id_ = H5I_INVALID_HID;
};

// The HDF5 memory type of a C++ element type.
template <typename T>
hid_t memType() {
  if constexpr (std::is_same_v<T, int32_t>) return H5T_NATIVE_INT32;
  if constexpr (std::is_same_v<T, int64_t>) return H5T_NATIVE_INT64;
  if constexpr (std::is_same_v<T, float>) return H5T_NATIVE_FLOAT;
  if constexpr (std::is_same_v<T, double>) return H5T_NATIVE_DOUBLE;
  if constexpr (std::is_same_v<T, uint8_t>) return H5T_NATIVE_UINT8;
}

// A group (or the file's root group). Names are link names inside this group.
class Group {
 public:
  Group() = default;
  Group(Handle h, std::string path) : h_(std::move(h)), path_(std::move(path)) {}
  const std::string& path() const { return path_; }
  hid_t id() const { return h_.id(); }

  bool has(const std::string& name) const;
  Group open(const std::string& name) const;  // throws when missing or not a group
  Group create(const std::string& name) const;
  bool isDataset(const std::string& name) const;

  // Attributes on this group. The getters throw when the attribute is missing or has the
  // wrong class; the "or" forms return the fallback when it is missing.
  bool hasAttr(const std::string& name) const;
  void setInt(const std::string& name, int64_t v) const;
  void setDouble(const std::string& name, double v) const;
  void setString(const std::string& name, const std::string& v) const;
  int64_t getInt(const std::string& name) const;
  double getDouble(const std::string& name) const;
  std::string getString(const std::string& name) const;
  int64_t getIntOr(const std::string& name, int64_t fallback) const;
  std::string getStringOr(const std::string& name, const std::string& fallback) const;

  // Writes a contiguous dataset of the given shape (dims multiply to the element count).
  template <typename T>
  void write(const std::string& name, const T* data, std::vector<hsize_t> dims) const {
    writeRaw(name, memType<T>(), memType<T>(), data, dims);
  }
  template <typename T>
  void write(const std::string& name, const std::vector<T>& v) const {
    write(name, v.data(), {static_cast<hsize_t>(v.size())});
  }
  void writeStrings(const std::string& name, const std::vector<std::string>& v) const;

  // Shape of a dataset.
  std::vector<hsize_t> dims(const std::string& name) const;
  // Size in bytes of one stored element, and whether it is a floating-point class.
  size_t elementSize(const std::string& name, bool* isFloat) const;

  // Reads a whole dataset converted to T with one read. expectedCount >= 0 checks the
  // element count first; a mismatch throws (a damaged file, never a short buffer).
  template <typename T>
  std::vector<T> read(const std::string& name, int64_t expectedCount = -1) const {
    Handle ds = openDataset(name);
    std::vector<T> out(countChecked(ds, name, expectedCount));
    if (!out.empty()) readRaw(ds, name, memType<T>(), out.data(), out.size() * sizeof(T));
    return out;
  }
  std::vector<std::string> readStrings(const std::string& name, int64_t expectedCount = -1) const;
  // Reads into caller memory of exactly bytes bytes, converting to memory type mtype.
  void readRaw(const std::string& name, hid_t mtype, void* out, size_t bytes) const;

 private:
  void writeRaw(const std::string& name, hid_t ftype, hid_t mtype, const void* data,
                const std::vector<hsize_t>& dims) const;
  Handle openDataset(const std::string& name) const;
  std::vector<hsize_t> shape(const Handle& ds, const std::string& name) const;
  size_t countChecked(const Handle& ds, const std::string& name, int64_t expectedCount) const;
  void readRaw(const Handle& ds, const std::string& name, hid_t mtype, void* out,
               size_t bytes) const;
  std::string where(const std::string& name) const { return path_ + "/" + name; }

  Handle h_;
  std::string path_;
};

// An HDF5 file. Files are created with the 1.8 object format at least, which keeps
// checksums on metadata so that damage is detected rather than followed.
class File {
 public:
  static File create(const std::string& path);  // truncates
  static File open(const std::string& path, bool readOnly);
  Group root() const;
  void flush() const;
  void close();  // closes now and reports errors; the destructor closes silently
  // Releases the file's identifier now, from any thread, leaving this object as it is (the
  // file library serialises its calls): later opens through it fail with an error, objects
  // already open in the file stay readable until they are closed, and the destructor's
  // close finds nothing left to close. Call it once.
  void closeFromAnotherThread() const;
  const std::string& path() const { return path_; }

 private:
  Handle h_;
  std::string path_;
};

// True when the file starts with the HDF5 signature (checked without HDF5).
bool isHdf5(const std::string& path);

}  // namespace odb::h5
