// SPDX-License-Identifier: BSD-3-Clause
// The structure check: what it finds in faulty matrices, and that nothing outside of the arrays is read.
#include "sparse/blas/csr_check.h"

#include <climits>

#include "tests/sparse/support.h"

namespace qel::test {
namespace {

int check(const csr<double>& m, int base, std::string* words = nullptr) {
  exact_ints ia(static_cast<int>(m.ia.size())), ja(std::max(static_cast<int>(m.ja.size()), 1));
  std::copy(m.ia.begin(), m.ia.end(), ia.begin());
  std::copy(m.ja.begin(), m.ja.end(), ja.end() - static_cast<int>(m.ja.size()));
  const int entries = static_cast<int>(m.ja.size()), size = 1000;
  char text[1000] = "?";
  const int found =
      qel_csr_check(&m.rows, &m.columns, ia.data(), ja.end() - entries, &entries, &base, text, &size);
  if (words != nullptr) *words = text;
  return found;
}

TEST(CsrCheck, FindsAndWords) {
  const csr<double> good = {3, 3, {1, 3, 4, 6}, {1, 3, 2, 1, 3}, {}};
  const struct {
    const char* what;
    std::vector<int> ia, ja;
    int base, found;
    const char* words;
  } rows[] = {
      {"good", good.ia, good.ja, 1, 0, ""},
      {"good from 0", {0, 2, 3, 5}, {0, 2, 1, 0, 2}, 0, 0, ""},
      {"from 0 as from 1",
       {0, 2, 3, 5},
       {0, 2, 1, 0, 2},
       1,
       QEL_CSR_OTHER_BASE,
       "the indices count from 0, but were given as counting from 1\n"},
      {"from 1 as from 0", good.ia, good.ja, 0, QEL_CSR_OTHER_BASE,
       "the indices count from 1, but were given as counting from 0\n"},
      {"out of range",
       good.ia,
       {1, 4, 2, 0, 3},
       1,
       QEL_CSR_OUT_OF_RANGE,
       "row 1 has column 4, which is outside the matrix (the first of 2 such entries)\n"},
      {"unsorted",
       good.ia,
       {3, 1, 2, 1, 3},
       1,
       QEL_CSR_UNSORTED,
       "row 1 is not sorted: column 1 comes after a greater one\n"},
      {"duplicate",
       {1, 4, 5, 7},
       {1, 3, 3, 2, 1, 3},
       1,
       QEL_CSR_DUPLICATE,
       "row 1 has column 3 more than once\n"},
      {"duplicate apart",
       {1, 4, 5, 7},
       {1, 3, 1, 2, 1, 3},
       1,
       QEL_CSR_DUPLICATE | QEL_CSR_UNSORTED,
       "row 1 is not sorted: column 1 comes after a greater one\nrow 1 has column 1 more than once\n"},
      {"no diagonal",
       {1, 3, 3, 5},
       {1, 3, 1, 3},
       1,
       QEL_CSR_NO_DIAGONAL,
       "row 2 has no entry on the diagonal\n"},
      {"starts fall",
       {1, 3, 2, 6},
       good.ja,
       1,
       QEL_CSR_BAD_ROW_STARTS | QEL_CSR_NO_DIAGONAL | QEL_CSR_UNSORTED | QEL_CSR_DUPLICATE,
       nullptr},
      {"starts outside",
       {1, 3, 4, 7},
       good.ja,
       1,
       QEL_CSR_BAD_ROW_STARTS,
       "row start 4 is 7: before its predecessor or outside the entries\n"},
  };
  for (const auto& row : rows) {
    std::string words;
    EXPECT_EQ(check({3, 3, row.ia, row.ja, {}}, row.base, &words), row.found) << row.what << words;
    if (row.words != nullptr) {
      EXPECT_EQ(words, row.words) << row.what;
    }
  }
  EXPECT_EQ(check({3, 3, good.ia, good.ja, {}}, 2), QEL_CSR_BAD_SIZES);
  EXPECT_EQ(check({0, 0, {1}, {}, {}}, 1), 0);
}

TEST(CsrCheck, TextIsCut) {
  const int one = 1, base = 1, none = 0, six = 6, ia[] = {1, 1};
  char text[] = "xxxxxxxxxx";
  EXPECT_EQ(qel_csr_check(&one, &one, ia, nullptr, &none, &base, text, &six), QEL_CSR_NO_DIAGONAL);
  EXPECT_STREQ(text, "row 1");
  EXPECT_EQ(text[6], 'x');
  EXPECT_EQ(qel_csr_check(&one, &one, ia, nullptr, &none, &base, nullptr, &six), QEL_CSR_NO_DIAGONAL);
}

TEST(CsrCheck, SurvivesMutations) {
  std::mt19937 random(77);
  long found = 0;
  for (int round = 0; round < 100000; ++round) {
    auto m = make_csr<double>(pattern::sorted, static_cast<int>(random() % 8), static_cast<int>(random() % 8),
                              static_cast<unsigned>(round));
    for (unsigned change = 0; change <= random() % 3; ++change) {
      std::vector<int>& array = random() % 2 != 0 && !m.ja.empty() ? m.ja : m.ia;
      int& target = array[random() % array.size()];
      const auto near = static_cast<unsigned>(target);
      const int values[] = {0,
                            -1,
                            1,
                            INT_MAX,
                            INT_MIN,
                            static_cast<int>(near + 1),
                            static_cast<int>(near - 1),
                            static_cast<int>(random())};
      target = values[random() % std::size(values)];
    }
    std::vector<int> ia = m.ia, ja = m.ja;  // ASan sees what is read beside them
    found += sparse::check_csr(m.rows, m.columns, ia.data(), ja.data(), static_cast<core_int>(ja.size()),
                               static_cast<core_int>(random() % 2))
                 .bits() != 0;
  }
  EXPECT_GT(found, 50000);
}

}  // namespace
}  // namespace qel::test
