#include "widzety/api/pek_kluczy.hpp"

#include "base/text/utf8.hpp"

namespace widzety {
namespace {

constexpr const char* usluga = "pl.ferol.vamba";
constexpr const char* grupaDostepu = "QX4R2M7K9A.pl.ferol.vamba";

}  // namespace

platform::KeychainQuery PekKluczy::zapytanie(std::string_view konto) {
  using platform::KeychainKey;
  return {{KeychainKey::itemClass, platform::genericPasswordClass},
          {KeychainKey::service, usluga},
          {KeychainKey::account, std::string(konto)},
          {KeychainKey::accessGroup, grupaDostepu}};
}

std::optional<base::SecretText> PekKluczy::czytaj(std::string_view konto) const {
  auto query = zapytanie(konto);
  query.emplace_back(platform::KeychainKey::returnData, true);
  query.emplace_back(platform::KeychainKey::matchLimit, platform::MatchLimit::one);
  auto [status, data] = magazyn_->copyMatching(query, termin_);
  if (status != platform::KeychainStatus::success || !data) return std::nullopt;
  if (!base::isUtf8(data->text())) return std::nullopt;
  return std::move(data);
}

void PekKluczy::usun(std::string_view konto) const {
  magazyn_->deleteItems(zapytanie(konto), termin_.plus(std::chrono::milliseconds(250)));
}

}  // namespace widzety
