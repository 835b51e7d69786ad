// A certificate for a server that nobody vouches for.
#pragma once
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <openssl/evp.h>
#include <openssl/x509.h>

namespace vellum::test {

// For 127.0.0.1, of today, signed by itself: all that is wrong with it is who vouches for it.
inline QSslConfiguration ownCertificate() {
  EVP_PKEY* key = EVP_EC_gen("P-256");
  X509* made = X509_new();
  ASN1_INTEGER_set(X509_get_serialNumber(made), 1);
  X509_gmtime_adj(X509_getm_notBefore(made), -3600);
  X509_gmtime_adj(X509_getm_notAfter(made), 3600);
  X509_set_pubkey(made, key);
  X509_NAME* name = X509_get_subject_name(made);
  const auto* address = reinterpret_cast<const unsigned char*>("127.0.0.1");
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, address, -1, -1, 0);
  X509_set_issuer_name(made, name);
  X509_sign(made, key, EVP_sha256());
  const auto der = [](const auto& write, const auto* from) {
    QByteArray bytes(write(from, nullptr), '\0');
    auto* to = reinterpret_cast<unsigned char*>(bytes.data());
    write(from, &to);
    return bytes;
  };
  QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
  configuration.setLocalCertificate(QSslCertificate(der(i2d_X509, made), QSsl::Der));
  configuration.setPrivateKey(QSslKey(der(i2d_PrivateKey, key), QSsl::Ec, QSsl::Der));
  X509_free(made);
  EVP_PKEY_free(key);
  return configuration;
}

} // namespace vellum::test
