// SPDX-License-Identifier: BSD-3-Clause
// With one less than its leading dimension a band is an ordinary matrix, of which only the band may be
// touched. A panel of columns is factored in a dense copy, with zeros below the band. What follows it stands
// inside the band and is updated there, but for a corner at the far right, whose top lies above the band: it
// has a copy, too. Multipliers are stored as if each column had been eliminated by itself: later exchanges do
// not move them.
#include "lapack/factor/gbtrf.h"

#include "blas/plain/scratch.h"
#include "lapack/factor/core_blas.h"
#include "lapack/factor/elements.h"
#include "lapack/factor/lu_panel.h"
#include "lapack/factor/row_swaps.h"
#include "lapack/four_types.h"
#include "service/serv.h"

namespace qel::lapack {

namespace {

template <class T>
class band_lu {
 public:
  band_lu(const band_lu_plan& plan, core_int m, core_int n, core_int kl, core_int ku, T* ab, core_int ldab,
          core_int* pivots, T* memory)
      : plan_(plan),
        m_(m),
        n_(n),
        kl_(kl),
        ku_(ku),
        above_(kl + ku),
        band_(ab + kl + ku),
        ld_(ldab - 1),
        pivots_(pivots),
        dense_ld_(plan.block + kl),
        panel_(memory),
        corner_(memory + dense_ld_ * plan.block) {}

  static core_int memory_needed(core_int block, core_int kl) { return 2 * block * (block + kl); }

  core_int run() {
    clear_fill_in();
    core_int first_zero = 0, reach = 0;  // reach: end of the columns that exchanges have filled
    const core_int order = std::min(m_, n_);
    for (core_int first = 0; first < order; first += plan_.block) {
      const core_int width = std::min(plan_.block, order - first);
      const core_int rows = std::min(m_ - first, width + kl_);
      take(first, width, rows);
      const core_int zero = factor_lu(rows, width, panel_, dense_ld_, pivots_ + first);
      if (zero != 0 && first_zero == 0) first_zero = first + zero;
      for (core_int j = 0; j < width; ++j) {
        reach = std::max(reach, std::min(first + pivots_[first + j] + ku_, n_));
      }
      update(first, width, rows, first + width, std::min(reach, first + above_ + 1));
      update_corner(first, width, rows, std::max(first + above_ + 1, first + width), reach);
      give_back(first, width, rows);
      for (core_int j = first; j < first + width; ++j) pivots_[j] += first;
    }
    return first_zero;
  }

 private:
  T* at(core_int i, core_int j) const { return band_ + i + j * ld_; }

  void clear_fill_in() const {
    for (core_int j = 0; j < n_; ++j) {
      for (core_int i = std::max<core_int>(0, j - above_); i < std::min(j - ku_, m_); ++i) set(at(i, j), T{});
    }
  }
  void take(core_int first, core_int width, core_int rows) const {
    for (core_int j = 0; j < width; ++j) {
      for (core_int i = 0; i < rows; ++i) {
        panel_[i + j * dense_ld_] = i - j <= kl_ ? element(at(first + i, first + j)) : T{};
      }
    }
  }
  void give_back(core_int first, core_int width, core_int rows) const {
    for (core_int j = width - 1; j >= 0; --j) {
      const core_int other = pivots_[first + j] - 1;
      if (other == j) continue;
      for (core_int c = 0; c < j; ++c) exchange(panel_ + j + c * dense_ld_, panel_ + other + c * dense_ld_);
    }
    for (core_int j = 0; j < width; ++j) {
      const core_int end = std::min(rows, j + kl_ + 1);
      for (core_int i = 0; i < end; ++i) set(at(first + i, first + j), panel_[i + j * dense_ld_]);
    }
  }

  /// Calls part(begin, end) for slices of the columns.
  template <class Part>
  void over_slices(core_int begin, core_int end, const Part& part) const {
    const core_int count = end - begin;
    if (count <= 0) return;
    const auto slices = static_cast<int>(std::min<core_int>(plan_.slices, count));
    if (slices == 1) return part(begin, end);
#pragma omp parallel for num_threads(slices) schedule(static, 1)
    for (int slice = 0; slice < slices; ++slice) {
      part(begin + count * slice / slices, begin + count * (slice + 1) / slices);
    }
  }

  void update(core_int first, core_int width, core_int rows, core_int begin, core_int end) const {
    over_slices(begin, end, [&](core_int j, core_int stop) {
      swap_rows(stop - j, at(first, j), ld_, 0, width, pivots_ + first);
    });
    over_slices(begin, end, [&](core_int j, core_int stop) {
      solve('L', 'L', 'N', 'U', width, stop - j, panel_, dense_ld_, at(first, j), ld_);
    });
    if (rows == width) return;
    over_slices(begin, end, [&](core_int j, core_int stop) {
      subtract_product('N', 'N', rows - width, stop - j, width, panel_ + width, dense_ld_, at(first, j), ld_,
                       at(first + width, j), ld_);
    });
  }
  /// Of these columns the first rows are not stored; they are zero and stay so.
  void update_corner(core_int first, core_int width, core_int rows, core_int begin, core_int end) const {
    over_slices(begin, end, [&](core_int j, core_int stop) {
      T* const copy = corner_ + (j - begin) * dense_ld_;
      const auto move = [&](bool back) {
        for (core_int c = j; c < stop; ++c) {
          T* const column = copy + (c - j) * dense_ld_;
          const core_int stored = c - above_ - first;
          for (core_int i = 0; i < rows; ++i) {
            if (back && i >= stored) set(at(first + i, c), column[i]);
            if (!back) column[i] = i < stored ? T{} : element(at(first + i, c));
          }
        }
      };
      move(false);
      swap_rows(stop - j, copy, dense_ld_, 0, width, pivots_ + first);
      solve('L', 'L', 'N', 'U', width, stop - j, panel_, dense_ld_, copy, dense_ld_);
      if (rows > width) {
        subtract_product('N', 'N', rows - width, stop - j, width, panel_ + width, dense_ld_, copy, dense_ld_,
                         copy + width, dense_ld_);
      }
      move(true);
    });
  }

  const band_lu_plan& plan_;
  core_int m_, n_, kl_, ku_, above_;
  T* band_;
  core_int ld_;
  core_int* pivots_;
  core_int dense_ld_;
  T *panel_, *corner_;
};

}  // namespace

band_lu_plan plan_band_lu(const band_lu_facts& facts) {
  constexpr double kWorkToFork = 200000;  // operations behind a panel for each slice
  const char name[] = {facts.type, 'G', 'B', 'T', 'R', 'F'};
  const core_int block = std::min<core_int>(
      tuned_block_size({kBlockSize, {name, sizeof name}, " ", facts.m, facts.n, facts.kl, facts.ku},
                       facts.processor),
      64);
  if (block <= 1) return {0, 1, "narrow band"};
  if (block > facts.kl) return {0, 1, "fewer rows below the diagonal than a block has columns"};
  const double work = 2 * static_cast<double>(block) * static_cast<double>(facts.kl) *
                      static_cast<double>(std::min(facts.n, facts.kl + facts.ku));
  const double slices = std::min(work / kWorkToFork, static_cast<double>(facts.threads));
  if (slices < 2) return {block, 1, facts.threads < 2 ? "one thread" : "too little work for slices"};
  return {block, static_cast<int>(slices), "slices of the columns behind a panel"};
}

template <class T>
bool factor_band_as_planned(const band_lu_plan& plan, core_int m, core_int n, core_int kl, core_int ku, T* ab,
                            core_int ldab, core_int* pivots, core_int* first_zero) {
  const plain::scratch<T> memory(band_lu<T>::memory_needed(plan.block, kl));
  if (memory.get() == nullptr) return false;
  *first_zero = band_lu<T>(plan, m, n, kl, ku, ab, ldab, pivots, memory.get()).run();
  return true;
}

template <class T>
bool gbtrf(core_int m, core_int n, core_int kl, core_int ku, T* ab, core_int ldab, core_int* pivots,
           core_int* first_zero) {
  const band_lu_plan plan =
      plan_band_lu({type_letter<T>, m, n, kl, ku, serv_threads_all(), this_tuning_processor()});
  return plan.block > 0 && factor_band_as_planned(plan, m, n, kl, ku, ab, ldab, pivots, first_zero);
}

#define QEL_INSTANTIATE(T)                                                                              \
  template bool factor_band_as_planned(const band_lu_plan&, core_int, core_int, core_int, core_int, T*, \
                                       core_int, core_int*, core_int*);                                 \
  template bool gbtrf(core_int, core_int, core_int, core_int, T*, core_int, core_int*, core_int*);
QEL_FOUR_TYPES(QEL_INSTANTIATE)
#undef QEL_INSTANTIATE

}  // namespace qel::lapack
