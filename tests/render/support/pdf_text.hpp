// What a reader can select and search in a PDF, as pdftotext of poppler-utils reads it.
#pragma once

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

namespace render::testing {

inline std::string pdfText(const std::string& file) {
  const auto path = std::filesystem::path(::testing::TempDir()) / ("board-" + std::to_string(::getpid()) + ".pdf");
  std::ofstream(path, std::ios::binary) << file;
  std::string text;
  FILE* reader = ::popen(("pdftotext -layout '" + path.string() + "' - 2>&1").c_str(), "r");
  if (reader != nullptr) {
    std::array<char, 4096> buffer{};
    for (std::size_t count = 1; count > 0;) {
      count = std::fread(buffer.data(), 1, buffer.size(), reader);
      text.append(buffer.data(), count);
    }
    EXPECT_EQ(::pclose(reader), 0) << "pdftotext of the package poppler-utils: " << text;
  }
  std::filesystem::remove(path);
  return text;
}

}  // namespace render::testing
