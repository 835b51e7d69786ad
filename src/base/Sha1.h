// SHA-1 by OpenSSL, in steps: the digest of info dictionaries and of pieces.
#pragma once
#include "base/Bytes.h"
#include <memory>

struct evp_md_ctx_st;

namespace vellum {

// One running digest; reusable after finish(). Any one thread at a time.
class Sha1 {
public:
  Sha1();
  void update(ByteSpan bytes);
  // The digest of all updates since construction, finish() or reset(); starts anew.
  Hash20 finish();
  void reset();

  static Hash20 of(ByteSpan bytes);

private:
  struct Free {
    void operator()(evp_md_ctx_st* context) const;
  };
  std::unique_ptr<evp_md_ctx_st, Free> m_context;
};

} // namespace vellum
