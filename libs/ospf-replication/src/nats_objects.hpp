// Objects of the client library that end with their owner, and its failures as exceptions.
#pragma once

#include <nats/nats.h>

#include <memory>
#include <string>

#include "ospf_replication/carrier.hpp"

namespace ospf_replication {

template <auto destroy>
struct EndedBy {
  template <typename Object>
  void operator()(Object *object) const {
    destroy(object);
  }
};

using NatsMessage = std::unique_ptr<natsMsg, EndedBy<natsMsg_Destroy>>;
using StreamInfo = std::unique_ptr<jsStreamInfo, EndedBy<jsStreamInfo_Destroy>>;
using PublishAck = std::unique_ptr<jsPubAck, EndedBy<jsPubAck_Destroy>>;

struct EndSubscription {
  void operator()(natsSubscription *subscription) const {
    natsSubscription_Unsubscribe(subscription);
    natsSubscription_Destroy(subscription);
  }
};
using Subscription = std::unique_ptr<natsSubscription, EndSubscription>;

// The client library's words, without the place in its sources that leads them.
inline std::string words_of(natsStatus status) {
  const char *said = nats_GetLastError(nullptr);
  const std::string words = said == nullptr || *said == '\0' ? natsStatus_GetText(status) : said;
  const std::size_t place = words.starts_with('(') ? words.find("): ") : words.npos;
  return place == words.npos ? words : words.substr(place + 3);
}

[[noreturn]] inline void fail(const std::string &what, natsStatus status) {
  throw CarrierFailure(what + ": " + words_of(status));
}

inline void check(const std::string &what, natsStatus status) {
  if (status != NATS_OK) fail(what, status);
}

}  // namespace ospf_replication
