// The names that the parts of a Phone have in the state file, each once, for reading and for writing.
// Describe(visit, part) calls visit(name, member) for every member; a new member of phone.h gets its name here.
#pragma once

#include "simulator/phone/phone.h"

#include <concepts>
#include <type_traits>

namespace simulator {

template <class T, class Part>
concept Is = std::same_as<std::remove_const_t<T>, Part>;

void Describe(auto& visit, Is<Identity> auto& part)
{
    visit("number", part.number);
    visit("esn", part.esn);
    visit("info19", part.info19);
    visit("info20", part.info20);
    visit("model", part.model);
    visit("info148", part.info148);
    visit("info212", part.info212);
    visit("info216", part.info216);
    visit("info238", part.info238);
    visit("info242", part.info242);
    visit("info246", part.info246);
    visit("info250", part.info250);
    visit("info251", part.info251);
    visit("info253", part.info253);
}

void Describe(auto& visit, Is<Battery> auto& part)
{
    visit("battery1", part.battery1);
    visit("battery2", part.battery2);
}

void Describe(auto& visit, Is<Network> auto& part)
{
    visit("network0", part.network0);
    visit("network4", part.network4);
    visit("network5", part.network5);
    visit("network6", part.network6);
    visit("network8", part.network8);
    visit("network10", part.network10);
    visit("network12", part.network12);
    visit("network14", part.network14);
    visit("network16", part.network16);
    visit("network18", part.network18);
    visit("network20", part.network20);
    visit("network22", part.network22);
    visit("network26", part.network26);
    visit("network60", part.network60);
    visit("network64", part.network64);
}

void Describe(auto& visit, Is<Connection> auto& part)
{
    visit("connection0", part.connection0);
    visit("connection4", part.connection4);
    visit("connection8", part.connection8);
    visit("connection12", part.connection12);
    visit("connection16", part.connection16);
    visit("endReason", part.endReason);
    visit("connection18", part.connection18);
}

void Describe(auto& visit, Is<Setup> auto& part)
{
    visit("radio", part.radio);
    visit("lock", part.lock);
    visit("lockCode", part.lockCode);
    visit("parameter1", part.parameter1);
    visit("parameter2", part.parameter2);
    visit("parameter3", part.parameter3);
    visit("activationDialled", part.activationDialled);
}

void Describe(auto& visit, Is<ContactEntry> auto& part)
{
    visit("default", part.isDefault);
    visit("type", part.type);
    visit("value", part.value);
    visit("speedDial", part.speedDial);
}

void Describe(auto& visit, Is<Contact> auto& part)
{
    visit("group", part.group);
    visit("picture", part.picture);
    visit("ringer", part.ringer);
    visit("text", part.text);
    visit("firstName", part.firstName);
    visit("lastName", part.lastName);
    visit("entries", part.entries);
}

void Describe(auto& visit, Is<Event> auto& part)
{
    visit("start", part.start);
    visit("end", part.end);
    visit("created", part.created);
    visit("modified", part.modified);
    visit("alarmTime", part.alarmTime);
    visit("until", part.until);
    visit("zone", part.zone);
    visit("repeatType", part.repeatType);
    visit("ringer", part.ringer);
    visit("repeatCount", part.repeatCount);
    visit("alarm", part.alarm);
    visit("description", part.description);
    visit("uid", part.uid);
    visit("interval", part.interval);
    visit("byDay", part.byDay);
    visit("byDayFromEnd", part.byDayFromEnd);
    visit("byMonth", part.byMonth);
    visit("byMonthFromEnd", part.byMonthFromEnd);
    visit("byMonthDay", part.byMonthDay);
    visit("byMonthDayFromEnd", part.byMonthDayFromEnd);
}

void Describe(auto& visit, Is<Message> auto& part)
{
    visit("box", part.box);
    visit("status", part.status);
    visit("replyOption", part.replyOption);
    visit("time", part.time);
    visit("address", part.address);
    visit("callback", part.callback);
    visit("priority", part.priority);
    visit("hasBody", part.hasBody);
    visit("body", part.body);
}

void Describe(auto& visit, Is<Call> auto& part)
{
    visit("list", part.list);
    visit("entry4", part.entry4);
    visit("duration", part.duration);
    visit("time", part.time);
    visit("text", part.text);
}

void Describe(auto& visit, Is<Limits> auto& part)
{
    visit("contacts", part.contacts);
    visit("events", part.events);
    visit("messages", part.messages);
    visit("nameLength", part.nameLength);
    visit("numberLength", part.numberLength);
    visit("emailLength", part.emailLength);
    visit("bodyLength", part.bodyLength);
    visit("skippedDigit", part.skippedDigit);
}

void Describe(auto& visit, Is<Phone> auto& part)
{
    visit("identity", part.identity);
    visit("battery", part.battery);
    visit("network", part.network);
    visit("connection", part.connection);
    visit("setup", part.setup);
    visit("variance", part.variance);
    visit("limits", part.limits);
    visit("groups", part.groups);
    visit("pictures", part.pictures);
    visit("ringers", part.ringers);
    visit("contacts", part.contacts);
    visit("events", part.events);
    visit("messages", part.messages);
    visit("calls", part.calls);
}

} // namespace simulator
