// What comes back up from a view update: events to deliver once the update
// is over, in the order they arrived.
#pragma once

#include <list>

#include <boost/shared_ptr.hpp>

#include "vcos/COSEventData.h"

namespace sgutils {

class UpdateViewResults {
 public:
  using EventList = std::list<boost::shared_ptr<COSEventData>>;

  // Appends copies of [first, last) at the end; the event data is shared.
  void addEvents(EventList::const_iterator first, EventList::const_iterator last) {
    events_.insert(events_.end(), first, last);
  }
  const EventList& getEvents() const noexcept { return events_; }

 private:
  EventList events_;
};

}  // namespace sgutils
