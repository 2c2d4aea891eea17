"""The Python package with a simulated handset: what is read and written, refusals, changes, and loss."""

import datetime
import os
import queue
import time
import unittest
from unittest import mock

import phnnrv
from phnnrv import Change, pdu
from simulated import Simulated

WAIT = 30  # seconds; nothing here takes a tenth of it
CARD = "BEGIN:VCARD\nVERSION:3.0\nFN:{}\nTEL;TYPE=CELL:5550199\nEND:VCARD\n"
EVENT = (
    "BEGIN:VCALENDAR\nVERSION:2.0\nBEGIN:VEVENT\nDESCRIPTION:{}\n"
    "DTSTART:20090415T120000\nDTEND:20090415T130000\nEND:VEVENT\nEND:VCALENDAR\n"
)


class WithHandset(unittest.TestCase):
    def setUp(self) -> None:
        self.simulated = Simulated()
        self.addCleanup(self.simulated.close)
        self.handset = phnnrv.Handset(timeout=WAIT)
        self.addCleanup(self.handset.close)

    def refused(self, name, call, *arguments) -> None:
        with self.assertRaises(phnnrv.Error) as refusal:
            call(*arguments)
        self.assertEqual(refusal.exception.name, name)

    def test_identity_status_and_setup(self) -> None:
        identity = self.handset.identity()
        self.assertEqual((identity.model, identity.esn, identity.info253), ("Fjord 40", "15901193046", "555014273000000"))
        self.simulated.control("set battery/battery2 44")
        status = self.handset.status()
        self.assertEqual(status.battery, phnnrv.Battery(1, 44))
        self.assertEqual((status.network.network22, status.network.network26), (85, "Norvik Mobile"))
        self.assertEqual(self.handset.network_error_text(1025), "PHN_NETWORK_ERROR_1X_FADE, Fade")
        self.handset.set_parameters(phnnrv.Parameters(255, 2, 65535))
        self.assertEqual(self.handset.parameters(), phnnrv.Parameters(255, 2, 65535))
        self.assertRaises(OverflowError, self.handset.set_parameters, phnnrv.Parameters(256, 2, 3))
        self.handset.set_lock(True, "0000")
        self.assertEqual(self.simulated.control("show setup/lock"), "1")
        self.refused("PHN_ERROR_INVALID_LOCK_CODE", self.handset.set_lock, False, "9999")
        self.handset.activate()

    def test_contacts_and_events(self) -> None:
        for store, noun, command, count, text, field in (
            (self.handset.contacts, "contacts", 35, 44, CARD, "vcard"),
            (self.handset.events, "events", 30, 35, EVENT, "icalendar"),
        ):
            with self.subTest(noun):
                self.simulated.control(f"set limits/{noun} 61")
                store.put(60, text.format("Zoë"))
                entries = list(store)
                self.assertEqual((len(entries), entries[-1].index), (count + 1, 60))
                self.assertIn(":Zoë\r\n", getattr(entries[-1], field))
                store.delete(60)
                self.refused("PHN_ERROR_NOT_FOUND", store.get, 60)
                self.refused("PHN_ERROR_INVALID_PARAMETER", store.put, 60, "nothing")
                self.assertRaises(ValueError, store.put, 60, text.format("日本"))
                self.assertRaises(OverflowError, store.delete, 2**32)
                self.simulated.control(f"fault status=6@{command}*1")
                self.refused("PHN_ERROR_STATUS_6", list, store)
                store.clear()
                self.refused("PHN_ERROR_NOT_FOUND", store.get, 0)
        self.assertEqual(self.handset.contacts.picture_name(4), "Café au lait")

    def test_messages(self) -> None:
        messages = self.handset.messages
        stored = {box: messages.read(box) for box in phnnrv.MESSAGE_BOXES}
        self.assertEqual([len(found) for found in stored.values()], [6, 5, 6, 5, 5])
        for message in sum(stored.values(), []):  # the library's writer beside this one
            self.assertEqual(pdu.encode(pdu.decode(message.pdu)), message.pdu)
        sent = pdu.encode(pdu.Content(recipient="5550142", text="Hello", priority=2, callback="1"))
        index = messages.send(sent)
        found = [one for box in phnnrv.MESSAGE_BOXES for one in messages.read(box) if one.index == index]
        content = pdu.decode(found[0].pdu)
        self.assertEqual((content.text, content.priority, content.callback), ("Hello", 2, "1"))
        messages.mark(index, read=True)
        self.assertRaises(OverflowError, messages.delete, index + 0x10000)
        messages.delete(index)
        self.refused("PHN_ERROR_MESSAGE_NOT_FOUND", messages.delete, index)
        self.simulated.control("fault result=103@16")
        self.refused("PHN_NETWORK_ERROR_1X_CO_CANNOT_ORIGINATE", messages.send, sent)
        self.simulated.control("fault status=9@15")
        self.refused("PHN_ERROR_FAILED", messages.count, 0)

    def test_calls(self) -> None:
        calls = self.handset.calls
        self.assertEqual(calls.count(1), 13)
        self.assertEqual(calls.read(1)[0], phnnrv.Call(1, "Anna Berg", datetime.datetime(2009, 3, 2, 9, 7), 37000))
        calls.clear(1)
        self.assertEqual((calls.read(1), calls.count(1)), ([], 0))
        self.refused("PHN_ERROR_INVALID_PARAMETER", calls.count, 4)

    def test_changes_and_a_loss(self) -> None:
        told = queue.SimpleQueue()
        self.handset.on(Change.BATTERY_INFO, lambda change: 1 / 0)
        self.handset.on(Change.BATTERY_INFO, lambda change: told.put(self.handset.battery()))
        self.handset.on(Change.REMOVED, told.put)
        with mock.patch("threading.excepthook") as hook:
            self.simulated.control("set battery/battery2 43")
            self.assertEqual(told.get(timeout=WAIT), phnnrv.Battery(1, 43))
            self.assertIs(hook.call_args.args[0].exc_type, ZeroDivisionError)
            self.simulated.control("unplug")
            self.assertEqual(told.get(timeout=WAIT), Change.REMOVED)
            self.refused("PHN_ERROR_NO_DEVICE", self.handset.battery)
            self.simulated.control("plug")
            self.handset.reconnect(timeout=WAIT)
            self.simulated.control("set battery/battery2 42")
            self.assertEqual(told.get(timeout=WAIT), phnnrv.Battery(1, 42))

    def test_a_handler_may_close(self) -> None:
        closed = queue.SimpleQueue()
        self.handset.on(Change.REMOVED, lambda change: closed.put(self.handset.close()))
        self.simulated.control("unplug")
        closed.get(timeout=WAIT)
        self.refused("PHN_ERROR_NO_SERVICE_OBJECT", self.handset.battery)


class WithoutHandset(unittest.TestCase):
    def test_the_search_ends_in_time_and_the_library_is_unloaded(self) -> None:
        simulated = Simulated()
        self.addCleanup(simulated.close)
        simulated.control("unplug")
        started = time.monotonic()
        with self.assertRaises(phnnrv.Error) as refusal:
            phnnrv.Handset(timeout=0.1)
        self.assertEqual(refusal.exception.code, phnnrv.ErrorCode.PHN_ERROR_NO_DEVICE)
        self.assertLess(time.monotonic() - started, 1.4)  # one PHN_Startup takes longer
        simulated.control("plug")
        with phnnrv.Handset(timeout=WAIT, prompt_reads=True):  # once the first has ended
            self.assertRaises(RuntimeError, phnnrv.Handset, timeout=0)
            self.assertEqual(os.environ["PHNNRV_PROMPT_READS"], "1")
        self.assertNotIn("PHNNRV_PROMPT_READS", os.environ)
        with open("/proc/self/maps", encoding="utf-8") as maps:
            self.assertNotIn(os.path.basename(os.environ["PHNNRV_LIBRARY"]), maps.read())

    def test_what_is_no_library(self) -> None:
        for path in ("/nonexistent.so", "libc.so.6"):
            self.assertRaisesRegex(OSError, path, phnnrv.Handset, library=path)


class Pdu(unittest.TestCase):
    def test_what_is_sent_and_received(self) -> None:
        content = pdu.Content(recipient="5550142", text="Hi", priority=0, report=False)
        data = bytes.fromhex("0000021002040501D5568508081100032000100801000A0100010410148D20")
        self.assertEqual(pdu.encode(content), data)
        self.assertEqual(pdu.decode(data), content)
        full = pdu.Content(recipient="5" * 36, text="x" * 249, priority=0, report=False, callback="5" * 36)
        self.assertEqual(pdu.decode(pdu.encode(full)), full)
        for year in (1996, 2095):
            received = pdu.Content(sender="Café", text="", time=datetime.datetime(year, 12, 31, 23, 59, 58))
            self.assertEqual(pdu.decode(pdu.encode(received)), received)

    def test_what_cannot_be_carried(self) -> None:
        for wrong in (
            {"recipient": "+1"},
            {"recipient": "5" * 37},
            {"recipient": ""},
            {"recipient": "1", "sender": "2"},
            {},
            {"recipient": "1", "text": "naïve"},
            {"recipient": "1", "text": ""},
            {"recipient": "5" * 36, "text": "x" * 250, "priority": 0, "report": False, "callback": "5" * 36},
            {"recipient": "1", "text": "x" * 256},
            {"recipient": "1", "priority": 4},
        ):
            with self.subTest(wrong), self.assertRaises(ValueError):
                pdu.encode(pdu.Content(**({"text": "x"} | wrong)))

    def test_what_is_broken(self) -> None:
        data = pdu.encode(pdu.Content(sender="5551", text="Hi", time=datetime.datetime(2009, 7, 1, 14, 5)))
        self.assertRaises(ValueError, pdu.decode, b"\1" + data[1:])
        self.assertRaises(ValueError, pdu.decode, data.replace(b"\x03\x06\x09", b"\x03\x06\x0a"))
        for length in (0, 4, 12, *range(14, len(data))):  # all that end inside an item
            with self.subTest(length), self.assertRaises(ValueError):
                pdu.decode(data[:length])


if __name__ == "__main__":
    unittest.main()
