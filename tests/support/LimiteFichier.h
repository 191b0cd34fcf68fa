#pragma once
// A file size limit for the time of a scope, standing for a full disk: writes
// past it fail (SIGXFSZ ignored meanwhile) instead of killing the test.
#include <csignal>
#include <sys/resource.h>

namespace tg::test {

class LimiteTailleFichier {
 public:
  explicit LimiteTailleFichier(rlim_t octets) {
    getrlimit(RLIMIT_FSIZE, &avant_);
    signal_ = std::signal(SIGXFSZ, SIG_IGN);
    rlimit petite = avant_;
    petite.rlim_cur = octets;
    actif_ = setrlimit(RLIMIT_FSIZE, &petite) == 0;
  }
  ~LimiteTailleFichier() {
    setrlimit(RLIMIT_FSIZE, &avant_);
    std::signal(SIGXFSZ, signal_);
  }
  LimiteTailleFichier(const LimiteTailleFichier&) = delete;
  LimiteTailleFichier& operator=(const LimiteTailleFichier&) = delete;
  bool Active() const { return actif_; }

 private:
  rlimit avant_{};
  void (*signal_)(int) = nullptr;
  bool actif_ = false;
};

}  // namespace tg::test
