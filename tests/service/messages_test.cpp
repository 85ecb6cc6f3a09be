// SPDX-License-Identifier: BSD-3-Clause
// The reporter and the catalogue: exact texts on standard output.
#include <gtest/gtest.h>

#include <string>

#include "service/message_rows.h"
#include "service/serv.h"
#include "tests/support/in_child.h"

namespace qel {
namespace {

std::string report(const std::string& name, int code) {
  testing::internal::CaptureStdout();
  serv_xerbla_default(name.data(), &code, static_cast<int>(name.size()));
  return testing::internal::GetCapturedStdout();
}

TEST(Reporter, WordsEveryCode) {
  const struct {
    const char* name;
    int code;
    const char* want;
  } cases[] = {
      {"DGEMM ", 1, "\nQEL ERROR: Parameter 1 was incorrect on entry to DGEMM \n"},
      {"DGESV", 1079, "\nQEL ERROR: Parameter 1079 was incorrect on entry to DGESV\n"},
      {"DGETRF", 999, "\nQEL ERROR: Parameter 999 was incorrect on entry to DGETRF\n"},
      {"DGETRF", 1000, "\nQEL INTERNAL ERROR: Not enough work memory in function DGETRF\n"},
      {"DGETRF", 1001, "\nQEL ERROR: Incompatible optional parameters on entry to DGETRF\n"},
      {"DGETRF", 1002, "\nQEL ERROR: Parameter 1002 was incorrect on entry to DGETRF\n"},
      {"X", 0, "\nQEL INTERNAL ERROR: Condition 0 detected in function X\n"},
      {"X", -5, "\nQEL INTERNAL ERROR: Condition 5 detected in function X\n"},
      {"ABCDEFGHIJKLMNOPQRSTUVWXYZ1234", 2,
       "\nQEL ERROR: Parameter 2 was incorrect on entry to ABCDEFGHIJKLMNOPQRST\n"},
      {"", 3, "\nQEL ERROR: Parameter 3 was incorrect on entry to \n"},
  };
  for (const auto& c : cases) EXPECT_EQ(report(c.name, c.code), c.want);
}

TEST(Reporter, ReadsNoMoreOfTheNameThanItsLength) {
  const int code = 4;
  testing::internal::CaptureStdout();
  serv_xerbla_default("DGEMMxyz", &code, 5);
  serv_xerbla_default("DGEMM", &code, -1);
  const std::string out = testing::internal::GetCapturedStdout();
  EXPECT_NE(out.find("to DGEMM\n"), std::string::npos);
  EXPECT_NE(out.find("to \n"), std::string::npos);
}

int installed_code = 0;
void recording_entry(const char*, const int* code, int) { installed_code = *code; }

TEST(Reporter, CoreReportsGoToTheInstalledEntry) {
  const int code = 7;
  testing::internal::CaptureStdout();
  serv_set_xerbla(recording_entry);
  serv_xerbla("DTRSM ", &code, 6);
  EXPECT_EQ(installed_code, 7);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  testing::internal::CaptureStdout();
  serv_set_xerbla(nullptr);
  serv_xerbla("DTRSM ", &code, 6);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "\nQEL ERROR: Parameter 7 was incorrect on entry to DTRSM \n");
}

TEST(Messages, KeepsPercentSignsInterpretedASecondTime) {
  EXPECT_EQ(report("A%%B", 1), "\nQEL ERROR: Parameter 1 was incorrect on entry to A%B\n");
  EXPECT_EQ(report("A%dB", 1), "\nQEL ERROR: Parameter 1 was incorrect on entry to A0B\n");
  EXPECT_EQ(report("A%sB%nC%", 1), "\nQEL ERROR: Parameter 1 was incorrect on entry to A(null)BC\n");
  EXPECT_EQ(report("A(%)B", 1), "\nQEL ERROR: Parameter 1 was incorrect on entry to A(%)B\n");
}

TEST(Messages, TextFormDoesNotPrint) {
  testing::internal::CaptureStdout();
  EXPECT_STREQ(serv_message_text(0, 0), "");
  EXPECT_STREQ(serv_message_text(6, 0), "QEL ERROR: Parameter %d was incorrect on entry to %s");
  EXPECT_STREQ(serv_message_text(6, 2, 12, "NAME"), "QEL ERROR: Parameter 12 was incorrect on entry to NAME");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Messages, OwnRowsCannotOverflow) {
  // Names are cut at 20 characters before they get into a row, and a number has at most 11.
  int rows = 0;
  for (int number = 0; number < 1079; ++number) {
    const message_row* row = find_message_row(number);
    if (row == nullptr) continue;
    ++rows;
    const std::string text = row->text;
    const auto count = [&text](const char* conversion) {
      size_t found = 0;
      for (size_t at = text.find(conversion); at != std::string::npos; at = text.find(conversion, at + 2))
        ++found;
      return found;
    };
    EXPECT_LE(text.size() + 20 * count("%s") + 11 * count("%d"), 513u) << text;
    EXPECT_TRUE(row->severity == 1 || row->severity == 2 || row->severity == 4) << text;
  }
  EXPECT_GE(rows, 5);
}

TEST(Messages, OverflowEndsTheProcess) {
  const size_t fixed = std::string(serv_message_text(8, 1, "")).size();
  const auto printed_with = [&](size_t length) {
    const std::string name(length - fixed, 'x');
    return test::in_child([&] {
      serv_message(0, 8, 1, name.c_str());
      return 0;
    });
  };
  const test::child_result longest = printed_with(513);
  EXPECT_EQ(longest.exit_status, 0);
  EXPECT_EQ(longest.output.size(), 514u) << "the text whole, and a line feed";
  const test::child_result too_long = printed_with(514);
  EXPECT_EQ(too_long.exit_status, 8);
  EXPECT_EQ(too_long.output,
            "\nQEL INTERNAL ERROR: message buffer overflow."
            "\n       Message N 8   Lenght: 513   Buffer size: 512\n");
}

}  // namespace
}  // namespace qel
