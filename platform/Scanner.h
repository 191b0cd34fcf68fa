#pragma once
// Scanners and cameras through SANE: the three operations the menus need
// (choose the source, deliver a picture, and the caller saves it as a file).
// Each call starts SANE and ends it, so that no backend stays loaded between
// two scans and SANE_CONFIG_DIR is read each time.
#include <QImage>
#include <QString>
#include <QStringList>
#include <atomic>
#include <functional>

namespace tg {

struct SourceScanner {
  QString nom;          // SANE's device name, e.g. "test:0"
  QString description;  // vendor, model and type, for people
};

// The devices that answer; an empty list with `erreur` set when SANE cannot
// start, empty without error when none answers.
std::vector<SourceScanner> SourcesScanner(QString& erreur);

// One picture from `source` (the first device when empty), 8 or 16 bits grey
// or colour, or line art. `progres` gets 0 to 100 from the scanning thread;
// `annuler` is read between two reads. False with a French `erreur` (none
// when cancelled, then `annule` is set).
bool AcquerirScanner(const QString& source, QImage& sortie, QString& erreur, bool& annule,
                     const std::atomic<bool>& annuler, const std::function<void(int)>& progres = {});

// The source chosen by the user for this run (empty: the first one).
QString& SourceScannerChoisie();

// "Aucun scanner ne répond ..." : the message when no device answers.
QString TexteAucunScanner();

}  // namespace tg
