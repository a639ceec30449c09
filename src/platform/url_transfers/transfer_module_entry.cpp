// The entry of the loadable transfer module.
#include "platform/url_session/transfer_module.hpp"
#include "platform/url_transfers/transfer_loop.hpp"

namespace {

void drive(platform::LoadQueue& queue, const platform::TransferSettings& settings) {
  platform::TransferLoop(queue, settings).run();
}

constexpr platform::TransferFunctions functions{VAMBA_BUILD, drive};

}  // namespace

extern "C" __attribute__((visibility("default"))) const platform::TransferFunctions* vambaTransfers() {
  return &functions;
}
