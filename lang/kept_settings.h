// Puts a stream's format settings back on every way out of a block.
#pragma once

#include "foundation/stream/memory_stream.h"

namespace owlkit {

class KeptSettings {
  public:
    explicit KeptSettings(ByteStream& stream) : stream_(stream) { saved_.copySettings(stream); }
    ~KeptSettings() { stream_.copySettings(saved_); }
    KeptSettings(const KeptSettings&) = delete;
    KeptSettings& operator=(const KeptSettings&) = delete;

  private:
    ByteStream& stream_;
    MemoryStream saved_;  // empty: a stream is what holds settings
};

}  // namespace owlkit
