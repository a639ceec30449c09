#include "base/text/secret_text.hpp"

#include <cstdlib>
#include <new>
#include <vector>

#include <gtest/gtest.h>

namespace base {
namespace {

const void* watchedArray = nullptr;
std::size_t watchedSize = 0;
std::string seenAtItsEnd;

TEST(SecretText, HoldsItsBytesExactly) {
  EXPECT_EQ(SecretText().text(), "");
  EXPECT_EQ(SecretText("a\nb").text(), "a\nb");
  EXPECT_EQ(SecretText(std::string_view("a\0b", 3)).text(), std::string_view("a\0b", 3));
  EXPECT_EQ((SecretText{"Bearer ", "", "tok"}).text(), "Bearer tok");
  EXPECT_STREQ((SecretText{"Bearer ", "tok"}).cText(), "Bearer tok");
}

TEST(SecretText, IsMovedAndCopiedAsAValue) {
  SecretText first = "first";
  const SecretText copy = first;
  SecretText moved = std::move(first);
  EXPECT_EQ(copy, moved);
  moved = SecretText("second");
  EXPECT_EQ(moved.text(), "second");
  EXPECT_EQ(copy.text(), "first");
  std::vector<SecretText> many;
  for (int i = 0; i < 20; ++i) many.push_back(copy);
  for (const auto& each : many) EXPECT_EQ(each, copy);
}

TEST(SecretText, OverwritesItsBytesBeforeItGivesThemBack) {
  for (const std::string_view text : {"short", "a text that no small string could hold in itself"}) {
    watchedArray = nullptr;
    {
      SecretText secret(text);
      const SecretText owner = std::move(secret);
      watchedArray = owner.cText();
      watchedSize = text.size();
    }
    EXPECT_EQ(seenAtItsEnd, std::string(text.size(), '\0'));
    seenAtItsEnd.clear();
  }
}

}  // namespace
}  // namespace base

// Checks the watched array just before it is freed.
void* operator new[](std::size_t size) {
  if (void* const bytes = std::malloc(size)) return bytes;
  throw std::bad_alloc();
}
void operator delete[](void* bytes) noexcept {
  if (bytes != nullptr && bytes == base::watchedArray) {
    base::seenAtItsEnd.assign(static_cast<const char*>(bytes), base::watchedSize);
  }
  std::free(bytes);
}
void operator delete[](void* bytes, std::size_t) noexcept { operator delete[](bytes); }
