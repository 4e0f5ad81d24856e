#pragma once

// All event nodes.
#include "midi/ChannelEvents.h"
#include "midi/EventNode.h"
#include "midi/MetaEvents.h"
#include "midi/PlatformEvents.h"
#include "midi/SystemEvents.h"
#include "midi/SystemExclusiveEvent.h"
#include "midi/UserEvent.h"
