#include "desktop/x_resources.h"

#include <xcb/res.h>

#include <vector>

namespace desktop {
namespace {

std::string nameOf(const XClient& client, xcb_atom_t atom) {
    const Reply<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(client.get(), xcb_get_atom_name(client.get(), atom), nullptr));
    return reply ? std::string(xcb_get_atom_name_name(reply.get()),
                               static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())))
                 : std::string();
}

/// The lowest identifiers of the connections of the process.
std::vector<std::uint32_t> connectionsOf(const XClient& client, pid_t process) {
    const xcb_res_client_id_spec_t everyProcess{0, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const Reply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        client.get(), xcb_res_query_client_ids(client.get(), 1, &everyProcess), nullptr));
    std::vector<std::uint32_t> connections;
    if (!reply) {
        return connections;
    }
    auto entries = xcb_res_query_client_ids_ids_iterator(reply.get());
    for (; entries.rem > 0; xcb_res_client_id_value_next(&entries)) {
        if (xcb_res_client_id_value_value_length(entries.data) > 0 &&
            *xcb_res_client_id_value_value(entries.data) == static_cast<std::uint32_t>(process)) {
            connections.push_back(entries.data->spec.client);
        }
    }
    return connections;
}

}  // namespace

std::map<std::string, std::uint32_t> resourcesOf(const XClient& client, pid_t process) {
    std::map<std::string, std::uint32_t> resources;
    for (const std::uint32_t connection : connectionsOf(client, process)) {
        const Reply<xcb_res_query_client_resources_reply_t> reply(
            xcb_res_query_client_resources_reply(
                client.get(), xcb_res_query_client_resources(client.get(), connection), nullptr));
        if (!reply) {
            continue;
        }
        auto types = xcb_res_query_client_resources_types_iterator(reply.get());
        for (; types.rem > 0; xcb_res_type_next(&types)) {
            resources[nameOf(client, types.data->resource_type)] += types.data->count;
        }
    }
    return resources;
}

}  // namespace desktop
