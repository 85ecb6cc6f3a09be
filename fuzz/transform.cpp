// SPDX-License-Identifier: BSD-3-Clause
// Transforms: any descriptor, any settings in any order, commits, copies, and calls on blocks of just the
// size that lengths, strides and distances ask for.
#include <algorithm>
#include <memory>

#include "fuzz/support/input.h"
#include "qel/dfti.h"

namespace {

using namespace qel::fuzz;

constexpr int64_t kMostElements = 1 << 15, kMostPlaces = 1 << 16;

/// Places, counted in reals, that one side of a call touches around its pointer.
struct extent {
  int64_t low = 0, high = 0;
  bool far() const { return high - low > kMostPlaces; }
  void join(const extent& other) {
    low = std::min(low, other.low);
    high = std::max(high, other.high);
  }
};

class transform {
 public:
  explicit transform(DFTI_DESCRIPTOR_HANDLE handle) : handle_(handle) {}
  transform(const transform&) = delete;
  transform& operator=(const transform&) = delete;
  ~transform() { promise(DftiFreeDescriptor(&handle_) == 0 && handle_ == nullptr, "a descriptor is freed"); }
  DFTI_DESCRIPTOR_HANDLE handle() const { return handle_; }

  int integer(int parameter) const {
    int value = 0;
    promise(DftiGetValue(handle_, parameter, &value) == 0, "an integer is read");
    return value;
  }
  bool too_long() const {
    int64_t elements = integer(DFTI_NUMBER_OF_TRANSFORMS);
    int lengths[8];
    DftiGetValue(handle_, DFTI_LENGTHS, lengths);
    for (int k = 0; k < integer(DFTI_DIMENSION); ++k) {
      elements *= std::max(lengths[k], 1);
      if (elements > kMostElements) return true;
    }
    return elements > kMostElements;
  }

  void set(input& in) {
    const int parameter = in.in_range(-1, 28);
    int status = 0;
    if (parameter == DFTI_FORWARD_SCALE || parameter == DFTI_BACKWARD_SCALE) {
      status = DftiSetValue(handle_, parameter, in.number());
    } else if (parameter == DFTI_INPUT_STRIDES || parameter == DFTI_OUTPUT_STRIDES) {
      int strides[8];
      for (int& s : strides) s = in.integer();
      status = DftiSetValue(handle_, parameter, in.byte() < 250 ? strides : nullptr);
    } else if (parameter == DFTI_DESCRIPTOR_NAME) {
      const std::string name(static_cast<size_t>(in.in_range(0, 20)), 'n');
      status = DftiSetValue(handle_, parameter, name.c_str());
    } else {
      status = DftiSetValue(handle_, parameter, in.byte() < 160 ? in.in_range(30, 58) : in.integer());
    }
    promise(known(status), "a documented status");
  }
  void inquire(input& in) const {
    alignas(16) char place[256];
    promise(known(DftiGetValue(handle_, in.in_range(-1, 28), place)), "a documented status");
    std::vector<char> text(static_cast<size_t>(in.byte()));
    const int size = static_cast<int>(text.size());
    promise(known(qel_dfti_explain(handle_, text.data(), size)), "a documented status");
    promise(known(qel_dfti_validate(handle_, in.byte() % 2, text.data(), size)), "a documented status");
  }
  void commit() {
    if (too_long()) return;
    const int status = DftiCommitDescriptor(handle_);
    promise(known(status), "a documented status");
    promise((integer(DFTI_COMMIT_STATUS) == DFTI_COMMITTED) == (status == 0), "committed if it says so");
  }
  void compute(input& in) {
    if (too_long()) return;
    const bool backward = in.byte() % 2 == 1, in_place = integer(DFTI_PLACEMENT) == DFTI_INPLACE;
    const bool real = integer(DFTI_FORWARD_DOMAIN) == DFTI_REAL;
    const bool split = !real && integer(DFTI_COMPLEX_STORAGE) == DFTI_REAL_REAL;
    // In place the reals have the input's strides in both directions.
    const bool reals_are_input = in_place || !backward;
    extent input_side = side(true, real && reals_are_input, split, in_place),
           output_side = side(false, real && !reals_are_input, split, in_place);
    if (in_place) input_side.join(output_side);
    if (input_side.far() || output_side.far()) return;
    block first(*this, input_side, in), second(*this, output_side, in), third(*this, input_side, in),
        fourth(*this, output_side, in);
    const auto routine = backward ? DftiComputeBackward : DftiComputeForward;
    int status = 0;
    if (split) {
      status = in_place
                   ? routine(handle_, first.pointer(), third.pointer())
                   : routine(handle_, first.pointer(), third.pointer(), second.pointer(), fourth.pointer());
    } else {
      status =
          in_place ? routine(handle_, first.pointer()) : routine(handle_, first.pointer(), second.pointer());
    }
    promise(known(status), "a documented status");
    if (integer(DFTI_COMMIT_STATUS) != DFTI_COMMITTED)
      promise(status == DFTI_INVALID_CONFIGURATION, "not committed");
  }

 private:
  /// Memory of just an extent.
  class block {
   public:
    block(const transform& of, const extent& places, input& in)
        : real_bytes_(of.integer(DFTI_PRECISION) == DFTI_SINGLE ? sizeof(float) : sizeof(double)),
          low_(places.low),
          bytes_(new char[static_cast<size_t>(places.high - places.low) * real_bytes_]) {
      const auto count = static_cast<size_t>(places.high - places.low);
      for (size_t k = 0; k < count; ++k) {
        const double value = k < 16 ? in.number() : 1;
        const auto as_float = static_cast<float>(value);
        if (real_bytes_ == sizeof(float)) {
          std::memcpy(bytes_.get() + k * real_bytes_, &as_float, real_bytes_);
        } else {
          std::memcpy(bytes_.get() + k * real_bytes_, &value, real_bytes_);
        }
      }
    }
    void* pointer() { return bytes_.get() - low_ * static_cast<int64_t>(real_bytes_); }

   private:
    size_t real_bytes_;
    int64_t low_;
    std::unique_ptr<char[]> bytes_;
  };

  static bool known(int status) { return status >= 0 && status <= 9; }

  /// input: by whose strides; reals: the data of a real transform, else its spectrum.
  extent side(bool input, bool reals, bool split, bool in_place) const {
    const int dimension = integer(DFTI_DIMENSION);
    const bool real = integer(DFTI_FORWARD_DOMAIN) == DFTI_REAL;
    int lengths[8], strides[8], offsets[8], distance = 0, input_distance = 0;
    DftiGetValue(handle_, DFTI_LENGTHS, lengths);
    std::reverse(lengths, lengths + dimension);  // strides come in the caller's order
    DftiGetValue(handle_, input ? DFTI_INPUT_STRIDES : DFTI_OUTPUT_STRIDES, strides);
    DftiGetValue(handle_,
                 in_place ? DFTI_INPUT_STRIDES
                 : input  ? DFTI_INPUT_STRIDES
                          : DFTI_OUTPUT_STRIDES,
                 offsets);
    DftiGetValue(handle_, input ? DFTI_INPUT_DISTANCE : DFTI_OUTPUT_DISTANCE, &distance);
    DftiGetValue(handle_, DFTI_INPUT_DISTANCE, &input_distance);
    if (in_place && distance == 0) distance = input_distance;

    int last = lengths[dimension - 1], unit = split ? 1 : 2;
    if (real && reals) unit = 1;
    if (real && !reals) {
      const int format = integer(DFTI_PACKED_FORMAT);
      const bool rows = integer(DFTI_CONJUGATE_EVEN_STORAGE) == DFTI_COMPLEX_COMPLEX ||
                        (dimension > 1 && format == DFTI_CCS_FORMAT);
      unit = rows ? 2 : 1;
      if (rows) last = last / 2 + 1;
      if (!rows && format == DFTI_CCS_FORMAT) last = 2 * (last / 2 + 1);
    }
    extent result;
    const auto add = [&](int64_t count, int64_t step) {
      const int64_t reach = (std::max<int64_t>(count, 1) - 1) * step;
      (reach < 0 ? result.low : result.high) += reach;
    };
    for (int d = 0; d < dimension; ++d) add(d == dimension - 1 ? last : lengths[d], strides[d + 1]);
    add(integer(DFTI_NUMBER_OF_TRANSFORMS), distance);
    // In place an offset of real data counts reals on both sides.
    const int64_t offset = int64_t{offsets[0]} * (real && in_place ? 1 : unit);
    result.low = result.low * unit + offset;
    result.high = (result.high + 1) * unit + offset;
    return result;
  }

  DFTI_DESCRIPTOR_HANDLE handle_;
};

DFTI_DESCRIPTOR_HANDLE create(input& in) {
  constexpr int kLengths[] = {1,  2,  3,  4,   5,   7,   8,   11,  13,   16,  30,
                              31, 64, 67, 100, 128, 151, 179, 211, 1024, 1331};
  DFTI_DESCRIPTOR_HANDLE handle = nullptr;
  const int wild = in.byte();
  const int precision = wild == 1 ? in.integer() : DFTI_SINGLE + in.byte() % 2,
            domain = wild == 2 ? in.integer() : DFTI_COMPLEX + in.byte() % 2,
            dimension = wild == 3 ? in.integer() : 1 + (in.byte() < 128 ? 0 : in.byte() % 4);
  int lengths[8];
  for (int& n : lengths) n = wild == 4 ? in.integer() : in.one_of(kLengths);
  const int status = dimension == 1 ? DftiCreateDescriptor(&handle, precision, domain, 1, lengths[0])
                                    : DftiCreateDescriptor(&handle, precision, domain, dimension, lengths);
  promise(status >= 0 && status <= 9 && (status == 0) == (handle != nullptr), "a handle if it says so");
  return handle;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  input in(data, size);
  const DFTI_DESCRIPTOR_HANDLE handle = create(in);
  if (handle == nullptr) return 0;
  auto current = std::make_unique<transform>(handle);
  for (int calls = 0; !in.empty() && calls < 30; ++calls) {
    switch (in.byte() % 8) {
      case 0:
        current->inquire(in);
        break;
      case 1: {
        DFTI_DESCRIPTOR_HANDLE copy = nullptr;
        if (!current->too_long() && DftiCopyDescriptor(current->handle(), &copy) == 0)
          current = std::make_unique<transform>(copy);
        break;
      }
      case 2:
      case 3:
        current->commit();
        current->compute(in);
        break;
      case 4:
        current->compute(in);
        break;
      default:
        current->set(in);
    }
  }
  return 0;
}
