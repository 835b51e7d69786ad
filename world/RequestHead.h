// The head of an HTTP request, as far as a server in a test needs to know it. Pure.
#pragma once
#include <QByteArray>
#include <QString>
#include <QUrlQuery>

namespace vellum::world {

struct RequestHead {
  // Never fails: what is no request has an empty method.
  static RequestHead parse(const QByteArray& bytes);

  // Of the first header of that name, without blanks around it; empty if there is none.
  QByteArray header(const char* name) const;

  QByteArray method;
  QByteArray target; // as sent
  QString path;      // decoded
  QUrlQuery query;   // a "+" is a blank
  QByteArray head;
};

} // namespace vellum::world
