#include "odb/h5.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <stdexcept>

namespace odb::h5 {

void silenceErrors() {
  static std::once_flag once;
  std::call_once(once, [] { H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr); });
}

void fail(const std::string& what) {
  throw std::runtime_error("odb: " + what);
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
  id_ = H5I_INVALID_HID;
}

namespace {

Handle check(hid_t id, const std::string& what) {
  if (id < 0) fail(what);
  return Handle(id);
}

void checkStatus(herr_t s, const std::string& what) {
  if (s < 0) fail(what);
}

Handle stringType(size_t len) {
  Handle t = check(H5Tcopy(H5T_C_S1), "cannot make a string type");
  checkStatus(H5Tset_size(t.id(), len == 0 ? 1 : len), "cannot size a string type");
  H5Tset_cset(t.id(), H5T_CSET_UTF8);
  H5Tset_strpad(t.id(), H5T_STR_NULLPAD);
  return t;
}

Handle openAttr(const Group& g, const std::string& name) {
  return check(H5Aopen(g.id(), name.c_str(), H5P_DEFAULT),
               "missing attribute '" + name + "' on " + g.path());
}

H5T_class_t attrClass(const Handle& a) {
  Handle t = check(H5Aget_type(a.id()), "cannot read an attribute type");
  return H5Tget_class(t.id());
}

Handle newAttr(const Group& g, const std::string& name, hid_t type) {
  if (H5Aexists(g.id(), name.c_str()) > 0) H5Adelete(g.id(), name.c_str());
  Handle space = check(H5Screate(H5S_SCALAR), "cannot make a dataspace");
  return check(H5Acreate2(g.id(), name.c_str(), type, space.id(), H5P_DEFAULT, H5P_DEFAULT),
               "cannot create attribute '" + name + "' on " + g.path());
}

}  // namespace

bool Group::has(const std::string& name) const {
  return H5Lexists(id(), name.c_str(), H5P_DEFAULT) > 0;
}

Group Group::open(const std::string& name) const {
  if (!has(name)) fail("missing group " + where(name));
  H5O_info_t info;
  if (H5Oget_info_by_name(id(), name.c_str(), &info, H5P_DEFAULT) < 0 ||
      info.type != H5O_TYPE_GROUP)
    fail(where(name) + " is not a group");
  return Group(check(H5Gopen2(id(), name.c_str(), H5P_DEFAULT), "cannot open group " + where(name)),
               where(name));
}

Group Group::create(const std::string& name) const {
  Handle lcpl = check(H5Pcreate(H5P_LINK_CREATE), "cannot make a property list");
  H5Pset_char_encoding(lcpl.id(), H5T_CSET_UTF8);
  Handle gcpl = check(H5Pcreate(H5P_GROUP_CREATE), "cannot make a property list");
  H5Pset_obj_track_times(gcpl.id(), false);
  return Group(check(H5Gcreate2(id(), name.c_str(), lcpl.id(), gcpl.id(), H5P_DEFAULT),
                     "cannot create group " + where(name)),
               where(name));
}

bool Group::isDataset(const std::string& name) const {
  if (!has(name)) return false;
  H5O_info_t info;
  return H5Oget_info_by_name(id(), name.c_str(), &info, H5P_DEFAULT) >= 0 &&
         info.type == H5O_TYPE_DATASET;
}

bool Group::hasAttr(const std::string& name) const {
  return H5Aexists(id(), name.c_str()) > 0;
}

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

int64_t Group::getInt(const std::string& name) const {
  Handle a = openAttr(*this, name);
  if (attrClass(a) != H5T_INTEGER) fail("attribute " + where(name) + " is not an integer");
  int64_t v = 0;
  checkStatus(H5Aread(a.id(), H5T_NATIVE_INT64, &v), "cannot read attribute " + where(name));
  return v;
}

double Group::getDouble(const std::string& name) const {
  Handle a = openAttr(*this, name);
  H5T_class_t c = attrClass(a);
  if (c != H5T_FLOAT && c != H5T_INTEGER) fail("attribute " + where(name) + " is not a number");
  double v = 0;
  checkStatus(H5Aread(a.id(), H5T_NATIVE_DOUBLE, &v), "cannot read attribute " + where(name));
  return v;
}

std::string Group::getString(const std::string& name) const {
  Handle a = openAttr(*this, name);
  Handle t = check(H5Aget_type(a.id()), "cannot read the type of " + where(name));
  if (H5Tget_class(t.id()) != H5T_STRING) fail("attribute " + where(name) + " is not a text");
  Handle space = check(H5Aget_space(a.id()), "cannot read the shape of " + where(name));
  if (H5Sget_simple_extent_npoints(space.id()) != 1)
    fail("attribute " + where(name) + " is not one text");
  if (H5Tis_variable_str(t.id()) != 0)
    fail("attribute " + where(name) + " is not a fixed-length text");
  size_t n = H5Tget_size(t.id());
  if (n == 0 || n > (size_t(1) << 30)) fail("attribute " + where(name) + " has a bad size");
  std::string s(n, '\0');
  Handle mt = stringType(n);
  checkStatus(H5Aread(a.id(), mt.id(), s.data()), "cannot read attribute " + where(name));
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
  Handle space = check(H5Screate_simple(static_cast<int>(dims.size()), dims.data(), nullptr),
                       "cannot make the shape of " + where(name));
  Handle dcpl = check(H5Pcreate(H5P_DATASET_CREATE), "cannot make a property list");
  H5Pset_obj_track_times(dcpl.id(), false);
  Handle ds =
      check(H5Dcreate2(id(), name.c_str(), ftype, space.id(), H5P_DEFAULT, dcpl.id(), H5P_DEFAULT),
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
  return check(H5Dopen2(id(), name.c_str(), H5P_DEFAULT), "missing dataset " + where(name));
}

std::vector<hsize_t> Group::shape(const Handle& ds, const std::string& name) const {
  Handle space = check(H5Dget_space(ds.id()), "cannot read the shape of " + where(name));
  int rank = H5Sget_simple_extent_ndims(space.id());
  if (rank < 0 || rank > 8) fail("dataset " + where(name) + " has a bad shape");
  std::vector<hsize_t> d(static_cast<size_t>(rank));
  if (rank > 0 && H5Sget_simple_extent_dims(space.id(), d.data(), nullptr) < 0)
    fail("cannot read the shape of " + where(name));
  return d;
}

std::vector<hsize_t> Group::dims(const std::string& name) const {
  return shape(openDataset(name), name);
}

size_t Group::elementSize(const std::string& name, bool* isFloat) const {
  Handle ds = openDataset(name);
  Handle t = check(H5Dget_type(ds.id()), "cannot read the type of " + where(name));
  if (isFloat) *isFloat = H5Tget_class(t.id()) == H5T_FLOAT;
  return H5Tget_size(t.id());
}

size_t Group::countChecked(const Handle& ds, const std::string& name, int64_t expectedCount) const {
  uint64_t n = 1;
  for (hsize_t d : shape(ds, name)) {
    if (d > (uint64_t(1) << 40)) fail("dataset " + where(name) + " is impossibly large");
    n *= d;
  }
  if (n > (uint64_t(1) << 40)) fail("dataset " + where(name) + " is impossibly large");
  if (expectedCount >= 0 && n != static_cast<uint64_t>(expectedCount))
    fail("dataset " + where(name) + " holds " + std::to_string(n) + " values, expected " +
         std::to_string(expectedCount));
  return static_cast<size_t>(n);
}

void Group::readRaw(const std::string& name, hid_t mtype, void* out, size_t bytes) const {
  readRaw(openDataset(name), name, mtype, out, bytes);
}

void Group::readRaw(const Handle& ds, const std::string& name, hid_t mtype, void* out,
                    size_t bytes) const {
  Handle space = check(H5Dget_space(ds.id()), "cannot read the shape of " + where(name));
  hssize_t n = H5Sget_simple_extent_npoints(space.id());
  if (n < 0 || static_cast<size_t>(n) * H5Tget_size(mtype) != bytes)
    fail("dataset " + where(name) + " does not have the expected size");
  Handle ft = check(H5Dget_type(ds.id()), "cannot read the type of " + where(name));
  H5T_class_t fc = H5Tget_class(ft.id()), mc = H5Tget_class(mtype);
  bool numeric = (fc == H5T_INTEGER || fc == H5T_FLOAT) && (mc == H5T_INTEGER || mc == H5T_FLOAT);
  if (!numeric) fail("dataset " + where(name) + " does not hold numbers");
  checkStatus(H5Dread(ds.id(), mtype, H5S_ALL, H5S_ALL, H5P_DEFAULT, out),
              "cannot read dataset " + where(name) + " (damaged or truncated file?)");
}

std::vector<std::string> Group::readStrings(const std::string& name, int64_t expectedCount) const {
  Handle ds = openDataset(name);
  size_t n = countChecked(ds, name, expectedCount);
  Handle ft = check(H5Dget_type(ds.id()), "cannot read the type of " + where(name));
  if (H5Tget_class(ft.id()) != H5T_STRING || H5Tis_variable_str(ft.id()) != 0)
    fail("dataset " + where(name) + " does not hold fixed-length texts");
  size_t width = H5Tget_size(ft.id());
  if (width == 0 || width > (size_t(1) << 20) || n * width > (size_t(1) << 34))
    fail("dataset " + where(name) + " has a bad text size");
  std::vector<std::string> out(n);
  if (n == 0) return out;
  std::string buf(n * width, '\0');
  Handle mt = stringType(width);
  checkStatus(H5Dread(ds.id(), mt.id(), H5S_ALL, H5S_ALL, H5P_DEFAULT, buf.data()),
              "cannot read dataset " + where(name) + " (damaged or truncated file?)");
  for (size_t i = 0; i < n; ++i) {
    const char* p = buf.data() + i * width;
    out[i].assign(p, strnlen(p, width));
  }
  return out;
}

File File::create(const std::string& path) {
  silenceErrors();
  Handle fapl = check(H5Pcreate(H5P_FILE_ACCESS), "cannot make a property list");
  H5Pset_libver_bounds(fapl.id(), H5F_LIBVER_V18, H5F_LIBVER_LATEST);
  // No object carries a creation or modification time (here the root group, in create
  // and writeRaw the others): the same content is the same bytes, on every system.
  Handle fcpl = check(H5Pcreate(H5P_FILE_CREATE), "cannot make a property list");
  H5Pset_obj_track_times(fcpl.id(), false);
  File f;
  f.path_ = path;
  f.h_ = check(H5Fcreate(path.c_str(), H5F_ACC_TRUNC, fcpl.id(), fapl.id()),
               "cannot create file '" + path + "'");
  return f;
}

File File::open(const std::string& path, bool readOnly) {
  silenceErrors();
  File f;
  f.path_ = path;
  f.h_ = check(H5Fopen(path.c_str(), readOnly ? H5F_ACC_RDONLY : H5F_ACC_RDWR, H5P_DEFAULT),
               "cannot open '" + path + "' as a database file (truncated or damaged)");
  return f;
}

Group File::root() const {
  return Group(check(H5Gopen2(h_.id(), "/", H5P_DEFAULT), "cannot open the root of " + path_), "");
}

void File::flush() const {
  checkStatus(H5Fflush(h_.id(), H5F_SCOPE_GLOBAL), "cannot flush '" + path_ + "'");
}

void File::close() {
  if (!h_.valid()) return;
  // Release ownership first so that a failed close is not retried by the destructor.
  herr_t s = H5Fclose(h_.release());
  checkStatus(s, "cannot close '" + path_ + "'");
}

bool isHdf5(const std::string& path) {
  silenceErrors();
  return H5Fis_hdf5(path.c_str()) > 0;
}

}  // namespace odb::h5
