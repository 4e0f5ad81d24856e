#include "services/audiodevice/PortListeners.h"

#include <alsa/asoundlib.h>
#include <charconv>
#include <unistd.h>

namespace volvelle {

namespace {

std::optional<int> numberOf(const std::string& text, std::size_t begin, std::size_t end)
{
    int number = 0;
    const char* const last = text.data() + end;
    const auto [behind, error] = std::from_chars(text.data() + begin, last, number);
    return error == std::errc() && behind == last ? std::optional(number) : std::nullopt;
}

} // namespace

std::optional<std::pair<int, int>> sequencerAddressOf(const std::string& portName)
{
    const std::size_t space = portName.rfind(' ');
    const std::size_t colon = portName.rfind(':');
    if (space == std::string::npos || colon == std::string::npos || colon < space) {
        return std::nullopt;
    }
    const auto client = numberOf(portName, space + 1, colon);
    const auto port = numberOf(portName, colon + 1, portName.size());
    return client && port ? std::optional(std::pair(*client, *port)) : std::nullopt;
}

bool PortListeners::hasThisProcess(const std::string& portName)
{
    const auto address = sequencerAddressOf(portName);
    snd_seq_t* opened = nullptr;
    if (!sequencer && snd_seq_open(&opened, "default", SND_SEQ_OPEN_DUPLEX, SND_SEQ_NONBLOCK) == 0) {
        sequencer.reset(opened);
    }
    if (!sequencer || !address) {
        return true;
    }
    snd_seq_query_subscribe_t* query = nullptr;
    snd_seq_query_subscribe_alloca(&query);
    snd_seq_query_subscribe_set_client(query, address->first);
    snd_seq_query_subscribe_set_port(query, address->second);
    snd_seq_query_subscribe_set_type(query, SND_SEQ_QUERY_SUBS_READ);
    bool isHeard = false;
    for (int i = 0; !isHeard && snd_seq_query_port_subscribers(sequencer.get(), query) == 0; ++i) {
        isHeard = isOfThisProcess(snd_seq_query_subscribe_get_addr(query)->client);
        snd_seq_query_subscribe_set_index(query, i + 1);
    }
    return isHeard;
}

bool PortListeners::isOfThisProcess(int client)
{
    snd_seq_client_info_t* information = nullptr;
    snd_seq_client_info_alloca(&information);
    return snd_seq_get_any_client_info(sequencer.get(), client, information) == 0 &&
           snd_seq_client_info_get_pid(information) == getpid();
}

void PortListeners::Close::operator()(snd_seq_t* opened) const
{
    snd_seq_close(opened);
}

} // namespace volvelle
