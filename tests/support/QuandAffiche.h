#pragma once
// Runs `action` on the modal dialog of type Boite as soon as it is shown: the
// user's part in a test of a real dialog. Gives the watching timer, which
// goes once it has acted (delete it if the dialog may never come).
#include <QApplication>
#include <QTimer>
#include <functional>

namespace tg::test {

template <typename Boite>
QTimer* QuandAffiche(std::function<void(Boite*)> action) {
  auto* t = new QTimer;
  t->setInterval(10);
  QObject::connect(t, &QTimer::timeout, [t, action] {
    auto* b = qobject_cast<Boite*>(QApplication::activeModalWidget());
    if (b == nullptr || !b->isVisible()) return;
    t->stop();
    t->deleteLater();
    action(b);
  });
  t->start();
  return t;
}

}  // namespace tg::test
