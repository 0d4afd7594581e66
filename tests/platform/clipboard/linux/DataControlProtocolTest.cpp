#include "platform/clipboard/linux/DataControlProtocol.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <wayland-client-protocol.h>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The messages as lines: name, signature, and the interfaces of the arguments that are objects.
std::vector<std::string> described(const wl_message* messages, int count)
{
    std::vector<std::string> lines;
    for (int index = 0; index < count; ++index) {
        const wl_message& message = messages[index];
        std::string line = std::string(message.name) + '(' + message.signature + ')';
        int argument = 0;
        for (const char letter : std::string(message.signature)) {
            if (letter == '?' || (letter >= '0' && letter <= '9')) {
                continue;
            }
            if (message.types[argument] != nullptr) {
                line += std::string(" ") + message.types[argument]->name;
            }
            ++argument;
        }
        lines.push_back(line);
    }
    return lines;
}

std::vector<std::string> requests(const wl_interface& interface)
{
    return described(interface.methods, interface.method_count);
}

std::vector<std::string> events(const wl_interface& interface)
{
    return described(interface.events, interface.event_count);
}

TEST(DataControlProtocol, PrefersThePrefixThatAllHaveAgreedOn)
{
    EXPECT_THAT(dataControlProtocols, ElementsAre(&extDataControl, &zwlrDataControl));
}

TEST(DataControlProtocol, NamesItsInterfaces)
{
    EXPECT_STREQ(extDataControl.manager.name, "ext_data_control_manager_v1");
    EXPECT_STREQ(extDataControl.device.name, "ext_data_control_device_v1");
    EXPECT_STREQ(extDataControl.source.name, "ext_data_control_source_v1");
    EXPECT_STREQ(extDataControl.offer.name, "ext_data_control_offer_v1");
    EXPECT_STREQ(zwlrDataControl.manager.name, "zwlr_data_control_manager_v1");
    EXPECT_STREQ(zwlrDataControl.device.name, "zwlr_data_control_device_v1");
    EXPECT_STREQ(zwlrDataControl.source.name, "zwlr_data_control_source_v1");
    EXPECT_STREQ(zwlrDataControl.offer.name, "zwlr_data_control_offer_v1");
}

TEST(DataControlProtocol, DescribesTheManager)
{
    EXPECT_THAT(
        requests(extDataControl.manager),
        ElementsAre(
            "create_data_source(n) ext_data_control_source_v1",
            "get_data_device(no) ext_data_control_device_v1 wl_seat",
            "destroy()"));
    EXPECT_THAT(events(extDataControl.manager), IsEmpty());
    EXPECT_THAT(
        requests(zwlrDataControl.manager),
        ElementsAre(
            "create_data_source(n) zwlr_data_control_source_v1",
            "get_data_device(no) zwlr_data_control_device_v1 wl_seat",
            "destroy()"));
}

TEST(DataControlProtocol, DescribesTheDevice)
{
    EXPECT_THAT(
        requests(extDataControl.device),
        ElementsAre(
            "set_selection(?o) ext_data_control_source_v1",
            "destroy()",
            "set_primary_selection(?o) ext_data_control_source_v1"));
    EXPECT_THAT(
        events(extDataControl.device),
        ElementsAre(
            "data_offer(n) ext_data_control_offer_v1",
            "selection(?o) ext_data_control_offer_v1",
            "finished()",
            "primary_selection(?o) ext_data_control_offer_v1"));
    EXPECT_THAT(
        requests(zwlrDataControl.device),
        ElementsAre(
            "set_selection(?o) zwlr_data_control_source_v1",
            "destroy()",
            "set_primary_selection(2?o) zwlr_data_control_source_v1"));
    EXPECT_THAT(
        events(zwlrDataControl.device),
        ElementsAre(
            "data_offer(n) zwlr_data_control_offer_v1",
            "selection(?o) zwlr_data_control_offer_v1",
            "finished()",
            "primary_selection(2?o) zwlr_data_control_offer_v1"));
}

TEST(DataControlProtocol, DescribesSourceAndOffer)
{
    for (const auto* const protocol : dataControlProtocols) {
        EXPECT_THAT(requests(protocol->source), ElementsAre("offer(s)", "destroy()"));
        EXPECT_THAT(events(protocol->source), ElementsAre("send(sh)", "cancelled()"));
        EXPECT_THAT(requests(protocol->offer), ElementsAre("receive(sh)", "destroy()"));
        EXPECT_THAT(events(protocol->offer), ElementsAre("offer(s)"));
    }
}

} // namespace
} // namespace orlimo
