#pragma once
// Whole files as bytes, for tests that check what lies on disk.
#include <gtest/gtest.h>

#include <QByteArray>
#include <QFile>
#include <QString>

namespace tg::test {

// The file's bytes; empty when it cannot be read.
inline QByteArray LireOctets(const QString& chemin) {
  QFile f(chemin);
  return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void EcrireOctets(const QString& chemin, const QByteArray& octets) {
  QFile f(chemin);
  ASSERT_TRUE(f.open(QIODevice::WriteOnly)) << chemin.toStdString();
  ASSERT_EQ(f.write(octets), octets.size());
}

}  // namespace tg::test
