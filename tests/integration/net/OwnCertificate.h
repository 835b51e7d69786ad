// A server over TLS whose certificate nobody but itself has signed.
#pragma once
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QUrl>
#include <openssl/x509.h>

namespace vellum::test {

// For 127.0.0.1, of today: all that is wrong with it is who vouches for it.
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

// Main thread.
class UntrustedServer {
public:
  UntrustedServer() {
    m_server.setSslConfiguration(ownCertificate());
    m_server.listen(QHostAddress::LocalHost);
    QObject::connect(&m_server, &QTcpServer::pendingConnectionAvailable, &m_server, [this] {
      QTcpSocket* socket = m_server.nextPendingConnection();
      QObject::connect(socket, &QIODevice::readyRead, socket,
                       [this, socket] { m_heard += socket->readAll(); });
    });
  }
  QUrl url() const {
    return QUrl(QStringLiteral("https://127.0.0.1:%1/").arg(m_server.serverPort()));
  }
  const QByteArray& heard() const { return m_heard; } // decrypted

private:
  QSslServer m_server;
  QByteArray m_heard;
};

} // namespace vellum::test
