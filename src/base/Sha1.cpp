#include "base/Sha1.h"
#include <new>
#include <openssl/evp.h>

namespace vellum {

namespace {
// EVP_sha1() is looked up anew by every init in OpenSSL 3; a fetched digest is not.
const EVP_MD* digest() {
  static const EVP_MD* const fetched = EVP_MD_fetch(nullptr, "SHA1", nullptr);
  return fetched != nullptr ? fetched : EVP_sha1();
}
} // namespace

void Sha1::Free::operator()(evp_md_ctx_st* context) const { EVP_MD_CTX_free(context); }

Sha1::Sha1() : m_context(EVP_MD_CTX_new()) {
  if (!m_context) throw std::bad_alloc();
  reset();
}

void Sha1::reset() { EVP_DigestInit_ex2(m_context.get(), digest(), nullptr); }

void Sha1::update(ByteSpan bytes) { EVP_DigestUpdate(m_context.get(), bytes.data(), bytes.size()); }

Hash20 Sha1::finish() {
  Hash20 out{};
  EVP_DigestFinal_ex(m_context.get(), reinterpret_cast<unsigned char*>(out.data()), nullptr);
  reset();
  return out;
}

Hash20 Sha1::of(ByteSpan bytes) {
  Sha1 sha;
  sha.update(bytes);
  return sha.finish();
}

} // namespace vellum
