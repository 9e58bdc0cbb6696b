#include "odb/h5.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <stdexcept>

namespace odb::h5 {

void silenceErrors() {
  static std::once_flag once;
  std::call_once(once, [] {
    // HDF5's own shutdown at exit would close what is still open; after a close that
    // failed on a full disk that means touching a half-destroyed file and crashing. Files
    // are closed explicitly by their owners, so the shutdown is left to the system.
    H5dont_atexit();
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
  });
}

void fail(const std::string& what) {
  throw std::runtime_error("odb: " + what);
}

namespace {

// Collects the descriptions on HDF5's error stack, outermost call first.
herr_t collectError(unsigned n, const H5E_error2_t* e, void* data) {
  auto* text = static_cast<std::string*>(data);
  if (n >= 4) return 0;  // the innermost few say what went wrong; the rest is plumbing
  char minor[128] = "";
  H5Eget_msg(e->min_num, nullptr, minor, sizeof minor);
  if (!text->empty()) *text += "; ";
  *text += e->func_name ? e->func_name : "?";
  *text += ": ";
  std::string desc = e->desc && *e->desc ? e->desc : minor;
  std::replace(desc.begin(), desc.end(), '\n', ' ');
  *text += desc.size() > 300 ? desc.substr(0, 300) + "..." : desc;
  return 0;
}

}  // namespace

void failH5(const std::string& what) {
  std::string stack;
  H5Ewalk2(H5E_DEFAULT, H5E_WALK_UPWARD, collectError, &stack);
  H5Eclear2(H5E_DEFAULT);
  fail(stack.empty() ? what : what + " [" + stack + "]");
}

Handle& Handle::operator=(Handle&& o) noexcept {
  if (this != &o) {
    reset();
    id_ = o.id_;
    o.id_ = H5I_INVALID_HID;
  }
  return *this;
}

void Handle::reset() {
  if (id_ < 0) return;
  switch (H5Iget_type(id_)) {
    case H5I_FILE:
      H5Fclose(id_);
      break;
    case H5I_GROUP:
      H5Gclose(id_);
      break;
    case H5I_DATASET:
      H5Dclose(id_);
      break;
    case H5I_ATTR:
      H5Aclose(id_);
      break;
    case H5I_DATATYPE:
      H5Tclose(id_);
      break;
    case H5I_DATASPACE:
      H5Sclose(id_);
      break;
    case H5I_GENPROP_LST:
      H5Pclose(id_);
      break;
    default:
      break;
  }
  H5Eclear2(H5E_DEFAULT);
  id_ = H5I_INVALID_HID;
}

namespace {

// ---- One checked wrapper per HDF5 call ----------------------------------------------

Handle checked(hid_t id, const std::string& what) {
  if (id < 0) failH5(what);
  return Handle(id);
}

void checkStatus(herr_t s, const std::string& what) {
  if (s < 0) failH5(what);
}

bool checkedTri(htri_t t, const std::string& what) {
  if (t < 0) failH5(what);
  return t > 0;
}

H5T_class_t typeClass(const Handle& t, const std::string& what) {
  H5T_class_t c = H5Tget_class(t.id());
  if (c == H5T_NO_CLASS) failH5("cannot read the type class of " + what);
  return c;
}

size_t typeSize(const Handle& t, const std::string& what) {
  size_t n = H5Tget_size(t.id());
  if (n == 0) failH5("cannot read the element size of " + what);
  return n;
}

int64_t pointCount(const Handle& space, const std::string& what) {
  hssize_t n = H5Sget_simple_extent_npoints(space.id());
  if (n < 0) failH5("cannot read the extent of " + what);
  return static_cast<int64_t>(n);
}

Handle stringType(size_t len) {
  Handle t = checked(H5Tcopy(H5T_C_S1), "cannot make a string type");
  checkStatus(H5Tset_size(t.id(), len == 0 ? 1 : len), "cannot size a string type");
  checkStatus(H5Tset_cset(t.id(), H5T_CSET_UTF8), "cannot set a string encoding");
  checkStatus(H5Tset_strpad(t.id(), H5T_STR_NULLPAD), "cannot set a string padding");
  return t;
}

// The element sizes the format allows for a stored numeric class.
bool allowedNumber(H5T_class_t c, size_t size) {
  if (c == H5T_INTEGER) return size == 1 || size == 2 || size == 4 || size == 8;
  if (c == H5T_FLOAT) return size == 4 || size == 8;
  return false;
}

// True when values stored with class stored may be read as memory class wanted: integers
// as integers, floats (or integers) as floats.
bool convertible(H5T_class_t stored, H5T_class_t wanted) {
  return stored == wanted || (stored == H5T_INTEGER && wanted == H5T_FLOAT);
}

uint64_t fileSizeOf(hid_t file, const std::string& path) {
  hsize_t n = 0;
  checkStatus(H5Fget_filesize(file, &n), "cannot read the size of '" + path + "'");
  return n;
}

}  // namespace

bool Group::has(const std::string& name) const {
  // H5Lexists fails (rather than answering no) on a damaged link table.
  return checkedTri(H5Lexists(id(), name.c_str(), H5P_DEFAULT), "cannot look up " + where(name));
}

Group Group::open(const std::string& name) const {
  if (!has(name)) fail("missing group " + where(name));
  H5O_info_t info;
  checkStatus(H5Oget_info_by_name(id(), name.c_str(), &info, H5P_DEFAULT),
              "cannot read the object header of " + where(name));
  if (info.type != H5O_TYPE_GROUP) fail(where(name) + " is not a group");
  return Group(
      checked(H5Gopen2(id(), name.c_str(), H5P_DEFAULT), "cannot open group " + where(name)),
      where(name), fileSize_);
}

Group Group::create(const std::string& name) const {
  Handle lcpl = checked(H5Pcreate(H5P_LINK_CREATE), "cannot make a property list");
  checkStatus(H5Pset_char_encoding(lcpl.id(), H5T_CSET_UTF8), "cannot set a link encoding");
  Handle gcpl = checked(H5Pcreate(H5P_GROUP_CREATE), "cannot make a property list");
  checkStatus(H5Pset_obj_track_times(gcpl.id(), false), "cannot switch off object times");
  return Group(checked(H5Gcreate2(id(), name.c_str(), lcpl.id(), gcpl.id(), H5P_DEFAULT),
                       "cannot create group " + where(name)),
               where(name), fileSize_);
}

bool Group::isDataset(const std::string& name) const {
  if (!has(name)) return false;
  H5O_info_t info;
  checkStatus(H5Oget_info_by_name(id(), name.c_str(), &info, H5P_DEFAULT),
              "cannot read the object header of " + where(name));
  return info.type == H5O_TYPE_DATASET;
}

void Group::remove(const std::string& name) const {
  checkStatus(H5Ldelete(id(), name.c_str(), H5P_DEFAULT), "cannot remove " + where(name));
}

bool Group::hasAttr(const std::string& name) const {
  return checkedTri(H5Aexists(id(), name.c_str()), "cannot look up attribute " + where(name));
}

Handle Group::openAttr(const std::string& name) const {
  if (!hasAttr(name)) fail("missing attribute '" + name + "' on " + path_);
  return checked(H5Aopen(id(), name.c_str(), H5P_DEFAULT), "cannot open attribute " + where(name));
}

namespace {

Handle newAttr(const Group& g, const std::string& name, hid_t type) {
  std::string where = g.path() + "/" + name;
  if (checkedTri(H5Aexists(g.id(), name.c_str()), "cannot look up attribute " + where))
    checkStatus(H5Adelete(g.id(), name.c_str()), "cannot replace attribute " + where);
  Handle space = checked(H5Screate(H5S_SCALAR), "cannot make a dataspace");
  return checked(H5Acreate2(g.id(), name.c_str(), type, space.id(), H5P_DEFAULT, H5P_DEFAULT),
                 "cannot create attribute " + where);
}

}  // namespace

void Group::setInt(const std::string& name, int64_t v) const {
  Handle a = newAttr(*this, name, H5T_STD_I64LE);
  checkStatus(H5Awrite(a.id(), H5T_NATIVE_INT64, &v), "cannot write attribute " + where(name));
}

void Group::setDouble(const std::string& name, double v) const {
  Handle a = newAttr(*this, name, H5T_IEEE_F64LE);
  checkStatus(H5Awrite(a.id(), H5T_NATIVE_DOUBLE, &v), "cannot write attribute " + where(name));
}

void Group::setString(const std::string& name, const std::string& v) const {
  Handle t = stringType(v.size());
  Handle a = newAttr(*this, name, t.id());
  std::string padded = v.empty() ? std::string(1, '\0') : v;
  checkStatus(H5Awrite(a.id(), t.id(), padded.data()), "cannot write attribute " + where(name));
}

// Reads a numeric attribute that must hold exactly one value of an allowed class and size:
// H5Aread writes the whole extent into out, so an attribute crafted with more values must
// be refused before the read.
void Group::readScalarAttr(const std::string& name, hid_t mtype, void* out) const {
  Handle a = openAttr(name);
  std::string w = "attribute " + where(name);
  Handle t = checked(H5Aget_type(a.id()), "cannot read the type of " + w);
  Handle mt = checked(H5Tcopy(mtype), "cannot copy a memory type");
  H5T_class_t c = typeClass(t, w);
  if (!allowedNumber(c, typeSize(t, w)) || !convertible(c, typeClass(mt, "a memory type")))
    fail(w + " is not " + (H5Tget_class(mtype) == H5T_INTEGER ? "an integer" : "a number"));
  Handle space = checked(H5Aget_space(a.id()), "cannot read the shape of " + w);
  if (pointCount(space, w) != 1) fail(w + " is not one value");
  checkStatus(H5Aread(a.id(), mtype, out), "cannot read " + w);
}

int64_t Group::getInt(const std::string& name) const {
  int64_t v = 0;
  readScalarAttr(name, H5T_NATIVE_INT64, &v);
  return v;
}

double Group::getDouble(const std::string& name) const {
  double v = 0;
  readScalarAttr(name, H5T_NATIVE_DOUBLE, &v);
  return v;
}

std::string Group::getString(const std::string& name) const {
  Handle a = openAttr(name);
  std::string w = "attribute " + where(name);
  Handle t = checked(H5Aget_type(a.id()), "cannot read the type of " + w);
  if (typeClass(t, w) != H5T_STRING) fail(w + " is not a text");
  Handle space = checked(H5Aget_space(a.id()), "cannot read the shape of " + w);
  if (pointCount(space, w) != 1) fail(w + " is not one text");
  if (checkedTri(H5Tis_variable_str(t.id()), "cannot read the type of " + w))
    fail(w + " is not a fixed-length text");
  size_t n = typeSize(t, w);
  if (n > fileSize_) fail(w + " is larger than the file");
  std::string s(n, '\0');
  Handle mt = stringType(n);
  checkStatus(H5Aread(a.id(), mt.id(), s.data()), "cannot read " + w);
  s.resize(s.find('\0') == std::string::npos ? n : s.find('\0'));
  return s;
}

int64_t Group::getIntOr(const std::string& name, int64_t fallback) const {
  return hasAttr(name) ? getInt(name) : fallback;
}

std::string Group::getStringOr(const std::string& name, const std::string& fallback) const {
  return hasAttr(name) ? getString(name) : fallback;
}

void Group::writeRaw(const std::string& name, hid_t ftype, hid_t mtype, const void* data,
                     const std::vector<hsize_t>& dims) const {
  Handle space = checked(H5Screate_simple(static_cast<int>(dims.size()), dims.data(), nullptr),
                         "cannot make the shape of " + where(name));
  Handle dcpl = checked(H5Pcreate(H5P_DATASET_CREATE), "cannot make a property list");
  checkStatus(H5Pset_obj_track_times(dcpl.id(), false), "cannot switch off object times");
  Handle ds = checked(
      H5Dcreate2(id(), name.c_str(), ftype, space.id(), H5P_DEFAULT, dcpl.id(), H5P_DEFAULT),
      "cannot create dataset " + where(name));
  hsize_t n = 1;
  for (hsize_t d : dims) n *= d;
  if (n > 0)
    checkStatus(H5Dwrite(ds.id(), mtype, H5S_ALL, H5S_ALL, H5P_DEFAULT, data),
                "cannot write dataset " + where(name));
}

void Group::writeStrings(const std::string& name, const std::vector<std::string>& v) const {
  // Fixed-length, NUL-padded texts: the bytes sit in the dataset itself, so a damaged file
  // can at worst garble a text, never send the library after a bad heap reference.
  size_t width = 1;
  for (const auto& s : v) width = std::max(width, s.size());
  std::string buf(v.size() * width, '\0');
  for (size_t i = 0; i < v.size(); ++i) buf.replace(i * width, v[i].size(), v[i]);
  Handle t = stringType(width);
  writeRaw(name, t.id(), t.id(), buf.data(), {static_cast<hsize_t>(v.size())});
}

Handle Group::openDataset(const std::string& name) const {
  if (!has(name)) fail("missing dataset " + where(name));
  return checked(H5Dopen2(id(), name.c_str(), H5P_DEFAULT), "cannot open dataset " + where(name));
}

std::vector<hsize_t> Group::shape(const Handle& ds, const std::string& name) const {
  Handle space = checked(H5Dget_space(ds.id()), "cannot read the shape of " + where(name));
  int rank = H5Sget_simple_extent_ndims(space.id());
  if (rank < 0) failH5("cannot read the shape of " + where(name));
  if (rank > 8) fail("dataset " + where(name) + " has a bad shape");
  std::vector<hsize_t> d(static_cast<size_t>(rank));
  if (rank > 0)
    checkStatus(H5Sget_simple_extent_dims(space.id(), d.data(), nullptr),
                "cannot read the shape of " + where(name));
  return d;
}

std::vector<hsize_t> Group::dims(const std::string& name) const {
  return shape(openDataset(name), name);
}

// Checks the stored type and extent of a dataset against the memory type it is read as
// and against the file: a numeric class of an allowed size, and no more stored bytes
// than the file holds (every dataset is stored contiguously inside the file).
size_t Group::countChecked(const Handle& ds, const std::string& name, int64_t expectedCount,
                           hid_t mtype) const {
  std::string w = "dataset " + where(name);
  Handle ft = checked(H5Dget_type(ds.id()), "cannot read the type of " + w);
  Handle mt = checked(H5Tcopy(mtype), "cannot copy a memory type");
  H5T_class_t fc = typeClass(ft, w), mc = typeClass(mt, "a memory type");
  size_t esize = typeSize(ft, w);
  if (!convertible(fc, mc))
    fail(w + " does not hold " + (mc == H5T_FLOAT ? "numbers" : "integers"));
  if (!allowedNumber(fc, esize)) fail(w + " has a bad element size");
  uint64_t n = 1;
  for (hsize_t d : shape(ds, name)) {
    if (d > fileSize_) fail(w + " is larger than the file");
    n *= d;
    if (n > fileSize_ / esize) fail(w + " is larger than the file");
  }
  if (expectedCount >= 0 && n != static_cast<uint64_t>(expectedCount))
    fail(w + " holds " + std::to_string(n) + " values, expected " + std::to_string(expectedCount));
  if (n > 0 && H5Dget_storage_size(ds.id()) < n * esize)
    fail(w + " has no stored values for its extent (damaged or truncated file?)");
  return static_cast<size_t>(n);
}

void Group::readInto(const Handle& ds, const std::string& name, hid_t mtype, void* out,
                     const Rows* rows) const {
  std::string w = "dataset " + where(name);
  if (!rows) {
    checkStatus(H5Dread(ds.id(), mtype, H5S_ALL, H5S_ALL, H5P_DEFAULT, out),
                "cannot read " + w + " (damaged or truncated file?)");
    return;
  }
  Handle fspace = checked(H5Dget_space(ds.id()), "cannot read the shape of " + w);
  std::vector<hsize_t> d = shape(ds, name);
  std::vector<hsize_t> start(d.size(), 0), count = d;
  start[0] = rows->first;
  count[0] = rows->count;
  checkStatus(H5Sselect_hyperslab(fspace.id(), H5S_SELECT_SET, start.data(), nullptr, count.data(),
                                  nullptr),
              "cannot select rows of " + w);
  Handle mspace = checked(H5Screate_simple(static_cast<int>(count.size()), count.data(), nullptr),
                          "cannot make the shape of rows of " + w);
  checkStatus(H5Dread(ds.id(), mtype, mspace.id(), fspace.id(), H5P_DEFAULT, out),
              "cannot read rows of " + w + " (damaged or truncated file?)");
}

std::vector<std::string> Group::readStrings(const std::string& name, int64_t expectedCount) const {
  Handle ds = openDataset(name);
  std::string w = "dataset " + where(name);
  Handle ft = checked(H5Dget_type(ds.id()), "cannot read the type of " + w);
  if (typeClass(ft, w) != H5T_STRING ||
      checkedTri(H5Tis_variable_str(ft.id()), "cannot read the type of " + w))
    fail(w + " does not hold fixed-length texts");
  size_t width = typeSize(ft, w);
  uint64_t n = 1;
  for (hsize_t d : shape(ds, name)) {
    if (d > fileSize_) fail(w + " is larger than the file");
    n *= d;
  }
  if (width > fileSize_ || (n > 0 && n > fileSize_ / width)) fail(w + " is larger than the file");
  if (expectedCount >= 0 && n != static_cast<uint64_t>(expectedCount))
    fail(w + " holds " + std::to_string(n) + " values, expected " + std::to_string(expectedCount));
  if (n > 0 && H5Dget_storage_size(ds.id()) < n * width)
    fail(w + " has no stored texts for its extent (damaged or truncated file?)");
  std::vector<std::string> out(n);
  if (n == 0) return out;
  std::string buf(n * width, '\0');
  Handle mt = stringType(width);
  checkStatus(H5Dread(ds.id(), mt.id(), H5S_ALL, H5S_ALL, H5P_DEFAULT, buf.data()),
              "cannot read " + w + " (damaged or truncated file?)");
  for (size_t i = 0; i < n; ++i) {
    const char* p = buf.data() + i * width;
    out[i].assign(p, strnlen(p, width));
  }
  return out;
}

namespace {

// Closing a file closes every object still open in it, so that a failed close (a full
// disk) leaves nothing open that the library's shutdown would try to flush again.
Handle fileAccess(bool forCreate) {
  Handle fapl = checked(H5Pcreate(H5P_FILE_ACCESS), "cannot make a property list");
  checkStatus(H5Pset_fclose_degree(fapl.id(), H5F_CLOSE_STRONG), "cannot set the close degree");
  if (forCreate)
    checkStatus(H5Pset_libver_bounds(fapl.id(), H5F_LIBVER_V18, H5F_LIBVER_LATEST),
                "cannot set the object format");
  return fapl;
}

}  // namespace

File File::create(const std::string& path) {
  silenceErrors();
  Handle fapl = fileAccess(true);
  // No object carries a creation or modification time (here the root group, in create
  // and writeRaw the others): the same content is the same bytes, on every system.
  Handle fcpl = checked(H5Pcreate(H5P_FILE_CREATE), "cannot make a property list");
  checkStatus(H5Pset_obj_track_times(fcpl.id(), false), "cannot switch off object times");
  File f;
  f.path_ = path;
  f.h_ = checked(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, fcpl.id(), fapl.id()),
                 "cannot create file '" + path + "'");
  return f;
}

File File::open(const std::string& path, bool readOnly) {
  silenceErrors();
  Handle fapl = fileAccess(false);
  File f;
  f.path_ = path;
  f.h_ = checked(H5Fopen(path.c_str(), readOnly ? H5F_ACC_RDONLY : H5F_ACC_RDWR, fapl.id()),
                 "cannot open '" + path + "' as a database file (truncated or damaged)");
  return f;
}

Group File::root() const {
  uint64_t size = fileSizeOf(h_.id(), path_);
  // A file being written grows; its own reads are bounded by what it may become.
  unsigned intent = 0;
  checkStatus(H5Fget_intent(h_.id(), &intent), "cannot read the mode of '" + path_ + "'");
  if (intent & H5F_ACC_RDWR) size = UINT64_MAX / 2;
  return Group(checked(H5Gopen2(h_.id(), "/", H5P_DEFAULT), "cannot open the root of " + path_), "",
               size);
}

void File::flush() const {
  checkStatus(H5Fflush(h_.id(), H5F_SCOPE_GLOBAL), "cannot flush '" + path_ + "'");
}

void File::close() {
  if (!h_.valid()) return;
  // A close that fails (writing the cached metadata to a full disk) leaves the identifier
  // registered but its file half destroyed: it is abandoned, never used or closed again.
  if (H5Fclose(h_.release()) < 0) failH5("cannot close '" + path_ + "'");
}

File::~File() {
  try {
    close();
  } catch (...) {
  }
}

void File::closeFromAnotherThread() const {
  // Error printing is switched off per thread; this one may never have called the library.
  H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr);
  if (h_.valid()) H5Fclose(h_.id());
}

bool isHdf5(const std::string& path) {
  silenceErrors();
  htri_t r = H5Fis_hdf5(path.c_str());
  H5Eclear2(H5E_DEFAULT);
  return r > 0;
}

}  // namespace odb::h5
