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

using Options = std::unique_ptr<natsOptions, EndedBy<natsOptions_Destroy>>;
using NatsMessage = std::unique_ptr<natsMsg, EndedBy<natsMsg_Destroy>>;
using StreamInfo = std::unique_ptr<jsStreamInfo, EndedBy<jsStreamInfo_Destroy>>;
using MetaData = std::unique_ptr<jsMsgMetaData, EndedBy<jsMsgMetaData_Destroy>>;
using PublishAck = std::unique_ptr<jsPubAck, EndedBy<jsPubAck_Destroy>>;

struct EndSubscription {
  void operator()(natsSubscription *subscription) const {
    natsSubscription_Unsubscribe(subscription);
    natsSubscription_Destroy(subscription);
  }
};
using Subscription = std::unique_ptr<natsSubscription, EndSubscription>;

[[noreturn]] inline void fail(const std::string &what, natsStatus status) {
  const char *words = nats_GetLastError(nullptr);
  throw CarrierFailure(what + ": " +
                       (words != nullptr && *words != '\0' ? words : natsStatus_GetText(status)));
}

inline void check(const std::string &what, natsStatus status) {
  if (status != NATS_OK) fail(what, status);
}

}  // namespace ospf_replication
