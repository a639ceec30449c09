// A settings portal that says what a test wants of the desktop's appearance and changes its mind at run time. It owns
// org.freedesktop.portal.Desktop on a test's bus, answers on a thread of its own and leaves with the object.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "support/session_bus.hpp"

namespace support {

/// The values of org.freedesktop.appearance: 0 no preference, 1 dark, 2 light.
enum class ColourScheme : std::uint32_t { none = 0, dark = 1, light = 2 };

/// Red, green, blue, each from 0 to 1; portals say "none" by values beyond.
using AccentColour = std::array<double, 3>;

class StandInPortal {
 public:
  struct Appearance {
    std::optional<ColourScheme> colourScheme;  // absent: the portal does not know the key
    std::optional<AccentColour> accentColour;
  };
  /// Portals before the method ReadOne answer Read with a variant within the variant, and newer ones still do; the
  /// plain form was given by some.
  enum class ReadForm { wrappedTwice, plain };
  enum class ReadOneMethod { present, missing };
  struct Settings {
    Appearance appearance = {};
    ReadForm read = ReadForm::wrappedTwice;
    ReadOneMethod readOne = ReadOneMethod::present;
    std::set<std::string> silentAbout = {};  // keys; who asks for one has no answer until the portal speaks
  };

  /// Returns when it answers. Throws std::runtime_error.
  StandInPortal(const SessionBus& bus, const Settings& settings);
  ~StandInPortal();

  /// What changed is announced by the signal SettingChanged, which has been sent when this returns.
  void change(const Appearance& appearance);

  /// Answers what was left without an answer, and everything from now on; by what is true now, or was when a portal
  /// of several threads looked.
  void speak();
  void speakOf(const Appearance& past);

  /// How often it was asked, by Read, ReadOne or ReadAll.
  int reads() const;

 private:
  class Server;
  std::unique_ptr<Server> server_;
};

}  // namespace support
