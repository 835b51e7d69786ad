// Transfers that begin, tell what a test says, and end when it says so.
#pragma once
#include "net/FileTransfers.h"
#include <vector>

namespace vellum::test {

struct MadeTransfers final : FileTransfers {
  struct Transfer final : FileTransfer {
    void pause() override { ended(TransferPaused{}); }
    void cancel() override {}
    std::optional<TransferProgress> progress() const override { return now; }

    Ended ended;
    std::optional<TransferProgress> now;
  };
  std::shared_ptr<FileTransfer> start(TransferSource, Ended ended) override {
    all.push_back(std::make_shared<Transfer>());
    all.back()->ended = std::move(ended);
    return all.back();
  }
  std::vector<std::shared_ptr<Transfer>> all;
};

} // namespace vellum::test
