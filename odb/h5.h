// Thin checked wrappers over the HDF5 C library. Every HDF5 call of the library goes
// through one wrapper that checks its result and throws std::runtime_error naming the
// object, the operation and the innermost messages of HDF5's own error stack. HDF5's
// automatic error printing is switched off once (silenceErrors), so a damaged file
// produces one clear exception and nothing on standard error.
//
// Reads check every attribute's and dataset's type class, element size and extent against
// what the format allows and against the size of the file before reading or allocating,
// so a crafted header cannot make a read overrun its buffer or allocate more memory than
// the file could hold.
//
// Handles are move-only and close themselves. Bulk arrays are read with one H5Dread each.
#pragma once

#include <hdf5.h>

#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace odb::h5 {

// Turns off HDF5's automatic error printing and its clean-up at exit for the whole
// process; called before any other HDF5 call of the library. Idempotent.
void silenceErrors();

// Throws std::runtime_error("odb: " + what).
[[noreturn]] void fail(const std::string& what);
// Throws like fail, adding the messages on HDF5's error stack (then clears the stack).
[[noreturn]] void failH5(const std::string& what);

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

template <typename T>
inline constexpr bool kUnsupportedType = false;

// The HDF5 memory type of a C++ element type; other element types do not compile.
template <typename T>
hid_t memType() {
  if constexpr (std::is_same_v<T, int32_t>)
    return H5T_NATIVE_INT32;
  else if constexpr (std::is_same_v<T, int64_t>)
    return H5T_NATIVE_INT64;
  else if constexpr (std::is_same_v<T, float>)
    return H5T_NATIVE_FLOAT;
  else if constexpr (std::is_same_v<T, double>)
    return H5T_NATIVE_DOUBLE;
  else if constexpr (std::is_same_v<T, uint8_t>)
    return H5T_NATIVE_UINT8;
  else
    static_assert(kUnsupportedType<T>, "no HDF5 memory type for this element type");
}

// A part of a one- or two-dimensional dataset: rows [first, first + count) (all columns).
struct Rows {
  uint64_t first = 0;
  uint64_t count = 0;
};

// A group (or the file's root group). Names are link names inside this group.
class Group {
 public:
  Group() = default;
  Group(Handle h, std::string path, uint64_t fileSize)
      : h_(std::move(h)), path_(std::move(path)), fileSize_(fileSize) {}
  const std::string& path() const { return path_; }
  hid_t id() const { return h_.id(); }

  bool has(const std::string& name) const;
  Group open(const std::string& name) const;  // throws when missing or not a group
  Group create(const std::string& name) const;
  bool isDataset(const std::string& name) const;
  // Removes the link name (used to rewrite a dataset in place).
  void remove(const std::string& name) const;

  // Attributes on this group. The getters throw when the attribute is missing, has the
  // wrong class or size, or is not a single value; the "or" forms return the fallback
  // when it is missing.
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

  // Reads a whole dataset converted to T with one read. expectedCount >= 0 checks the
  // element count first; a mismatch throws (a damaged file, never a short buffer).
  template <typename T>
  std::vector<T> read(const std::string& name, int64_t expectedCount = -1) const {
    Handle ds = openDataset(name);
    std::vector<T> out(countChecked(ds, name, expectedCount, memType<T>()));
    if (!out.empty()) readInto(ds, name, memType<T>(), out.data(), nullptr);
    return out;
  }
  // Reads rows of a dataset of at least rows.first + rows.count rows, converted to T.
  template <typename T>
  std::vector<T> readRows(const std::string& name, Rows rows) const {
    Handle ds = openDataset(name);
    std::vector<hsize_t> d = shape(ds, name);
    countChecked(ds, name, -1, memType<T>());
    uint64_t width = 1;
    for (size_t i = 1; i < d.size(); ++i) width *= d[i];
    if (d.empty() || rows.first > d[0] || rows.count > d[0] - rows.first)
      fail("rows " + std::to_string(rows.first) + "+" + std::to_string(rows.count) +
           " are outside dataset " + where(name));
    std::vector<T> out(rows.count * width);
    if (!out.empty()) readInto(ds, name, memType<T>(), out.data(), &rows);
    return out;
  }
  std::vector<std::string> readStrings(const std::string& name, int64_t expectedCount = -1) const;

 private:
  void writeRaw(const std::string& name, hid_t ftype, hid_t mtype, const void* data,
                const std::vector<hsize_t>& dims) const;
  Handle openDataset(const std::string& name) const;
  Handle openAttr(const std::string& name) const;
  std::vector<hsize_t> shape(const Handle& ds, const std::string& name) const;
  size_t countChecked(const Handle& ds, const std::string& name, int64_t expectedCount,
                      hid_t mtype) const;
  void readInto(const Handle& ds, const std::string& name, hid_t mtype, void* out,
                const Rows* rows) const;
  void readScalarAttr(const std::string& name, hid_t mtype, void* out) const;
  std::string where(const std::string& name) const { return path_ + "/" + name; }

  Handle h_;
  std::string path_;
  uint64_t fileSize_ = 0;  // bounds every extent read from the file
};

// An HDF5 file. Files are created with the 1.8 object format at least, which keeps
// checksums on metadata so that damage is detected rather than followed.
class File {
 public:
  static File create(const std::string& path);  // truncates
  static File open(const std::string& path, bool readOnly);
  Group root() const;
  void flush() const;
  // Closes now (with every object still open in the file) and reports errors; the
  // destructor closes silently. After a failed close (a full disk) the file is abandoned:
  // nothing touches it again, not even at exit, where HDF5's clean-up is switched off.
  void close();
  ~File();
  File() = default;
  File(File&&) = default;
  File& operator=(File&&) = default;
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

// True when the file starts with the HDF5 signature.
bool isHdf5(const std::string& path);

}  // namespace odb::h5
