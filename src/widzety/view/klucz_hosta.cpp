#include "widzety/view/klucz_hosta.hpp"

#include "protocol/view_tree/localized_key.hpp"

namespace widzety {

protocol::LocalizedKey kluczHosta(std::string klucz, std::vector<std::int64_t> argumenty, Jezyk jezyk) {
  const auto wording = protocol::wordingOf(klucz, wartoscSurowa(jezyk)).value_or(klucz);
  std::string tekst = protocol::withArguments(wording, argumenty);
  return {.key = std::move(klucz), .arguments = std::move(argumenty), .value = std::move(tekst)};
}

}  // namespace widzety
