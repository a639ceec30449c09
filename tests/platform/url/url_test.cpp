#include "platform/url/url.hpp"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(Url, KeepsItsTextAndTellsItsParts) {
  struct Case {
    std::string text;
    std::optional<std::string> scheme, host, port;
  };
  for (const auto& [text, scheme, host, port] : std::vector<Case>{
           {"https://vamba.example/api/moje/zadania", "https", "vamba.example", std::nullopt},
           {"HTTP://Vamba.Example:8080//x/../y", "http", "vamba.example", "8080"},
           {"http://user:secret@[::1]:80/", "http", "::1", "80"},
           {"http://h:/", "http", "h", std::nullopt},
           {"/moje/zadania", std::nullopt, std::nullopt, std::nullopt},
           {"", std::nullopt, std::nullopt, std::nullopt},
           {"//h/x", std::nullopt, "h", std::nullopt},
           {"http:///x", "http", std::nullopt, std::nullopt},
           {"http:x", "http", std::nullopt, std::nullopt},
           {"file:///etc/passwd", "file", std::nullopt, std::nullopt},
       }) {
    const auto url = Url::parse(text);
    ASSERT_TRUE(url) << text;
    EXPECT_EQ(url->text(), text);
    EXPECT_EQ(url->scheme(), scheme) << text;
    EXPECT_EQ(url->host(), host) << text;
    EXPECT_EQ(url->port(), port) << text;
  }
}

TEST(Url, IsAbsentForTextThatIsNoUriReference) {
  for (const std::string text :
       {"http://a b/", "http://h/%zz", "http://h/%4", "http://h/ł", "http://h/x y", "http://h/x\n", "http://[::1/",
        "http://h:8a/", "1http://h/", "http://h/<x>", "http://h/\\x", " http://h/", "http://u@v@h/", "http://h/{x}"}) {
    EXPECT_FALSE(Url::parse(text)) << text;
  }
  EXPECT_FALSE(Url::parse(std::string("http://h/\0x", 11)));
}

}  // namespace
}  // namespace platform
