-- Wireshark's view of the wire between a host and its handset, as docs/protocol.md describes it. It takes what phnsim
-- writes with --pcap: link type USER0 (147) for the diagnostic port, one frame a packet, and USER1 (148) for the modem
-- port. Outbound packets are the host's, inbound ones the handset's.
-- Fields are named as phnsim --trace names them. A new field is one row of a record below; filters and tree follow.

local FLAG, COMMAND_CODE = 0x7E, 0x4B
local LONGEST_REQUEST_FRAME, LONGEST_REPLY_PAYLOAD = 8193, 8180 -- the frame as sent, the payload without stuffing

-- Kinds of fields: how many bytes, which kind of Wireshark's, and the value of a range of that size.

local function decimal(value)
    return ("%d"):format(value)
end

local function unsigned(size)
    return { size = size, field = ProtoField.uint32, show = decimal,
        value = function(range) return range:le_uint() end }
end

local U8, U16, U32 = unsigned(1), unsigned(2), unsigned(4)
local I32 = { size = 4, field = ProtoField.int32, show = decimal,
    value = function(range) return range:le_int() end }

local DATE_TIME = { size = 8, field = ProtoField.string, show = tostring, value = function(range)
    if range:le_uint64() == UInt64(0) then
        return "-"
    end
    return ("%04d-%02d-%02dT%02d:%02d:%02d"):format(range(6, 2):le_uint(), range(5, 1):uint(), range(4, 1):uint(),
        range(0, 1):uint(), range(1, 1):uint(), range(2, 2):le_uint())
end }

local function quoted(value)
    return '"' .. value:gsub("%c", ".") .. '"'
end

-- Wireshark's own conversion cuts the text by a byte for each character that takes two.
local function latin1(bytes)
    return (bytes:gsub("[\x80-\xFF]", function(character)
        local code = character:byte()
        return code < 0xC0 and "\xC2" .. character or "\xC3" .. string.char(code - 0x40)
    end))
end

-- UTF-16, and one character a byte, up to the first zero.
local function text(units)
    return { size = 2 * units, field = ProtoField.string, show = quoted, value = function(range)
        local length = 0
        while length + 2 <= range:len() and range(length, 2):uint() ~= 0 do
            length = length + 2
        end
        return length == 0 and "" or range(0, length):le_ustring()
    end }
end

local function characters(size)
    return { size = size, field = ProtoField.string, show = quoted, value = function(range)
        return latin1(range:raw():match("^[^\0]*"))
    end }
end

-- Records: rows of a name and a kind, or of bytes that mean nothing. A row is there `times` times and has `size` bytes
-- where its kind does not say it: numbers, or functions of the values before it. A row of `rows` is a record inside.

local function unused(size)
    return { size = size }
end

local function as_many_as(name)
    return function(values) return values[name] end
end

local CONNECTION = {
    { "connection0", U32 }, { "connection4", U32 }, { "connection8", U32 }, { "connection12", U32 },
    { "connection16", U8 }, { "endReason", U8 }, { "connection18", U8 },
}

local NETWORK = {
    { "network0", U32 }, { "network4", U8 }, { "network5", U8 }, { "network6", U16 }, { "network8", U16 },
    { "network10", U16 }, { "network12", U16 }, { "network14", U16 }, { "network16", U16 }, { "network18", U16 },
    { "network20", U16 }, { "network22", I32 }, { "network26", characters(34) }, { "network60", I32 },
    { "network64", U32 },
}

local DIGITS = 14

local IDENTITY = {
    { "digits", U8 },
    { "digit", U8, times = function(values) return math.min(values.digits, DIGITS) end },
    { size = function(values) return DIGITS - math.min(values.digits, DIGITS) end },
    { "esn", U32 }, { "info19", U8 }, { "info20", text(32) }, { "model", text(32) }, { "info148", text(32) },
    { "info212", U32 }, { "info216", text(11) }, { "info238", U32 }, { "info242", U32 }, { "info246", U32 },
    { "info250", U8 }, { "info251", U8 }, unused(1), { "info253", text(15) },
}

local FIELD_SIZES = {}
for i = 1, 11 do
    FIELD_SIZES[i] = { "size" .. i, U32 }
end

local CONTACT_ENTRY = { { "default", U32 }, { "type", U32 }, { "value", text(52) }, { "speedDial", U32 } }

-- The picture has one place when it is written and another one when it is read.
local function contact(first_picture, second_picture)
    return {
        { "id", U32 }, { "group", U32 }, first_picture, second_picture, { "ringer", U32 }, { "text", text(40) },
        { "firstName", text(36) }, { "lastName", text(36) }, unused(216), { "entries", U32 },
        { "entry", rows = CONTACT_ENTRY, times = as_many_as("entries") },
    }
end

local CONTACT_WRITTEN = contact({ "picture", U32 }, unused(4))
local CONTACT_READ = contact(unused(4), { "picture", U32 })

local EVENT = {
    { "start", DATE_TIME }, { "end", DATE_TIME }, { "created", DATE_TIME }, { "modified", DATE_TIME },
    { "alarmTime", DATE_TIME }, { "until", DATE_TIME }, { "zone", U32 }, { "repeatType", U32 }, { "ringer", U32 },
    unused(4), { "repeatCount", U32 }, unused(4), { "valid", U16 }, { "alarm", U16 }, { "description", text(80) },
    { "uid", text(40) }, { "interval", U32 }, { "byDay", U8, times = 8 }, { "byDayFromEnd", U8, times = 8 },
    unused(16), { "byMonth", U32 }, { "byMonthFromEnd", U32 }, { "byMonthDay", U32 }, { "byMonthDayFromEnd", U32 },
}

local function message(status)
    return {
        { "index", U32 }, status, { "replyOption", U32 }, { "time", DATE_TIME }, { "address", text(36) },
        { "callback", text(36) }, { "priority", U32 }, { "bodySize", U32 },
        { "body", text(0), size = as_many_as("bodySize") },
    }
end

local MESSAGE_WRITTEN, MESSAGE_READ = message(unused(4)), message({ "status", U32 })

local CALL = {
    { "id", U32 }, { "entry4", U32 }, { "duration", U32 }, { "time", DATE_TIME }, unused(80), { "text", text(52) },
}

local PARAMETERS = { { "parameter1", U8 }, { "parameter2", U8 }, { "parameter3", U16 } }
local BOX, LIST, ID, INDEX = { { "box", U32 } }, { { "list", U32 } }, { { "id", U32 } }, { { "index", U32 } }
local MESSAGES = { { "messages", U32 }, { "message", rows = MESSAGE_READ, times = as_many_as("messages") } }
local CALLS = { { "entries", U32 }, { "call", rows = CALL, times = as_many_as("entries") } }
local EVENTS = { { "events", U32 }, { "event", rows = EVENT, times = as_many_as("events") } }
local CONTACTS = { unused(4), { "records", U32 },
    { "contact", rows = CONTACT_READ, times = as_many_as("records") } }
local NAME = { { "name", text(36) } }

-- The commands: name, what follows the header of a request, whether its reply has a result, and what follows there.
local COMMANDS = {
    [1] = { "startup" },
    [2] = { "shutdown" },
    [3] = { "connection information", reply = CONNECTION },
    [4] = { "network information", reply = NETWORK },
    [5] = { "battery information", reply = { { "battery1", U8 }, { "battery2", U8 } } },
    [6] = { "device information", reply = IDENTITY },
    [8] = { "radio power", request = { { "radio", U8 } } },
    [9] = { "phone lock", request = { { "lock", U8 }, { "code", characters(4) } } },
    [10] = { "change lock code", request = { { "code", characters(4) }, { "newCode", characters(4) } } },
    [12] = { "read parameters", reply = PARAMETERS },
    [13] = { "write parameters", request = PARAMETERS },
    [15] = { "count messages", request = BOX, result = true, reply = { { "messages", U32 } } },
    [16] = { "send message", request = MESSAGE_WRITTEN, result = true, reply = INDEX },
    [17] = { "first message", request = BOX, result = true, reply = MESSAGES },
    [18] = { "next message", request = { { "box", U32 }, { "previous", U32 } }, result = true, reply = MESSAGES },
    [19] = { "save message", request = MESSAGE_WRITTEN, result = true, reply = INDEX },
    [20] = { "delete message", request = INDEX, result = true, reply = INDEX },
    [21] = { "delete all messages", request = BOX, result = true, reply = { unused(4) } },
    [22] = { "set message status", request = { { "index", U32 }, { "status", U32 } }, result = true, reply = INDEX },
    [25] = { "count calls", request = LIST, result = true, reply = { { "entries", U32 } } },
    [26] = { "first call", request = LIST, result = true, reply = CALLS },
    [27] = { "next call", request = { { "list", U32 }, { "previous", U32 } }, result = true, reply = CALLS },
    [28] = { "clear calls", request = LIST },
    [30] = { "read event", request = INDEX, result = true, reply = EVENTS },
    [31] = { "write event", request = { { "index", U32 }, { "event", rows = EVENT, times = 1 } }, result = true },
    [32] = { "delete event", request = INDEX, result = true },
    [33] = { "delete all events", result = true },
    [34] = { "phonebook field sizes", reply = FIELD_SIZES },
    [35] = { "read contact", request = ID, result = true, reply = CONTACTS },
    [36] = { "write contact", request = CONTACT_WRITTEN, result = true, reply = ID },
    [37] = { "delete contact", request = ID, result = true, reply = ID },
    [38] = { "delete all contacts", result = true, reply = { unused(4) } },
    [39] = { "picture id", request = { { "id", U32 }, unused(4) }, result = true, reply = NAME },
    [40] = { "ringer id", request = ID, result = true, reply = NAME },
    [41] = { "group", request = ID, result = true, reply = NAME },
    [45] = { "activation", request = { { "automatic", U32 }, { "dial", text(104) } } },
    [46] = { "open message store" },
    [49] = { "phone variance", reply = { { "flags", U16 } } },
}

local NAMES = {}
for value, command in pairs(COMMANDS) do
    NAMES[value] = command[1]
end

-- What of it is a field that can be filtered for.

local diagnostic = Proto("phnnrv", "PHNNRV diagnostic port")
local modem = Proto("phnnrv_modem", "PHNNRV modem port")

local fields = {
    ["frame.code"] = ProtoField.uint8("phnnrv.frame.code", "command code", base.HEX),
    ["frame.constant"] = ProtoField.bytes("phnnrv.frame.constant", "constant"),
    ["frame.ignored"] = ProtoField.bytes("phnnrv.frame.ignored", "not interpreted"),
    ["frame.length"] = ProtoField.uint32("phnnrv.frame.length", "length"),
    sequence = ProtoField.uint32("phnnrv.sequence", "sequence identifier"),
    ["frame.check"] = ProtoField.uint16("phnnrv.frame.check", "check value", base.HEX),
    ["frame.flag"] = ProtoField.uint8("phnnrv.frame.flag", "flag", base.HEX),
    command = ProtoField.uint32("phnnrv.command", "command", base.DEC, NAMES),
    one = ProtoField.uint16("phnnrv.one", "always 1"),
    unused = ProtoField.bytes("phnnrv.unused", "not used"),
    rest = ProtoField.bytes("phnnrv.rest", "rest"),
    line = ProtoField.string("phnnrv.line", "line"),
    answer = ProtoField.string("phnnrv.answer", "answer"),
    response_in = ProtoField.framenum("phnnrv.response_in", "reply in", base.NONE, frametype.RESPONSE),
    response_to = ProtoField.framenum("phnnrv.response_to", "reply to", base.NONE, frametype.REQUEST),
    response_time = ProtoField.relative_time("phnnrv.response_time", "response time"),
}

local STATUS, RESULT = { "status", U16 }, { "result", U32 }

local function declare(rows)
    for _, row in ipairs(rows) do
        local name, kind = row[1], row[2]
        if row.rows then
            declare(row.rows)
        elseif name and not fields[name] then
            fields[name] = kind.field("phnnrv." .. name, name)
        end
    end
end

declare({ STATUS, RESULT })
for _, command in pairs(COMMANDS) do
    declare(command.request or {})
    declare(command.reply or {})
end
diagnostic.fields = fields

local function problem(name, summary, group, severity)
    return ProtoExpert.new("phnnrv." .. name, summary, group, severity)
end

local problems = {
    cut = problem("cut", "The frame has no end", expert.group.MALFORMED, expert.severity.ERROR),
    escape = problem("escape", "An escape of no special byte", expert.group.MALFORMED, expert.severity.ERROR),
    short = problem("short", "Bytes are missing", expert.group.MALFORMED, expert.severity.ERROR),
    overlong = problem("overlong", "More bytes than there may be", expert.group.MALFORMED, expert.severity.ERROR),
    header = problem("header", "A header that is not of this protocol", expert.group.MALFORMED, expert.severity.ERROR),
    check = problem("check", "Wrong check value", expert.group.CHECKSUM, expert.severity.ERROR),
    unknown = problem("unknown", "Unknown command", expert.group.UNDECODED, expert.severity.WARN),
    refused = problem("refused", "Refused", expert.group.RESPONSE_CODE, expert.severity.NOTE),
    unasked = problem("unasked", "No request to this reply", expert.group.SEQUENCE, expert.severity.WARN),
    unanswered = problem("unanswered", "No reply to this request", expert.group.SEQUENCE, expert.severity.NOTE),
    undirected = problem("undirected", "The packet does not say who sent it", expert.group.ASSUMPTION,
        expert.severity.NOTE),
}
diagnostic.experts = problems

-- Reading: a cursor goes through bytes and adds what it finds to the tree, never beyond their end.

local function evaluate(number, values)
    return type(number) == "function" and number(values) or number
end

local Cursor = {}
Cursor.__index = Cursor

local function cursor(tvb, tree)
    return setmetatable({ tvb = tvb, tree = tree, at = 0, shown = {} }, Cursor)
end

function Cursor:left()
    return self.tvb:len() - self.at
end

-- What is left, marked as what it is not.
function Cursor:mark_rest(mark, summary)
    local left = self:left()
    local item = left > 0 and self.tree:add(fields.rest, self.tvb:range(self.at, left)) or self.tree
    item:add_proto_expert_info(mark, summary)
    self.at = self.tvb:len()
end

-- The next bytes; none when there are fewer.
function Cursor:take(size, name)
    if size > self:left() then
        self:mark_rest(problems.short, ("%s has %d of its %d bytes"):format(name, self:left(), size))
        return nil
    end
    self.at = self.at + size
    return self.tvb:range(self.at - size, size)
end

-- A number of a header, which the summary leaves out, and its item.
function Cursor:header(name, size)
    local range = self:take(size, name)
    if range then
        return range:le_uint(), self.tree:add_le(fields[name], range)
    end
end

function Cursor:bytes(name, size)
    local range = self:take(size, name)
    return range and self.tree:add(fields[name], range)
end

-- Readers of a row give false when the bytes end in it.
function Cursor:field(name, kind, size, values)
    local range = self:take(size, name)
    if not range then
        return false
    end
    local value = kind.value(range)
    values[name] = value
    self.tree:add(fields[name], range, value)
    self.shown[#self.shown + 1] = name .. "=" .. kind.show(value)
    return true
end

function Cursor:nested(row, number)
    if self:left() == 0 then
        return self:take(1, row[1]) ~= nil
    end
    local outer, from = self.tree, self.at
    self.tree = outer:add(diagnostic, self.tvb:range(from), row[1] .. " " .. number)
    local is_whole = self:record(row.rows)
    self.tree:set_len(self.at - from)
    self.tree = outer
    return is_whole
end

function Cursor:row(row, number, values)
    if row.rows then
        return self:nested(row, number)
    end
    local size = evaluate(row.size or row[2].size, values)
    if size == 0 then
        return true
    elseif not row[1] then
        return self:bytes("unused", size) ~= nil
    end
    return self:field(row[1], row[2], size, values)
end

function Cursor:record(rows)
    local values = {}
    for _, row in ipairs(rows) do
        for number = 1, evaluate(row.times or 1, values) do
            if not self:row(row, number, values) then
                return false
            end
        end
    end
    return true
end

-- Which reply answers which request. `asked` holds, while packets are seen for the first time, the requests that wait;
-- `exchanges` keeps what is shown of each packet's frames, again and again.

local asked, exchanges

function diagnostic.init()
    asked, exchanges = {}, {}
end

-- `key` is what a reply has in common with its request, `place` tells the frames of a packet apart.
local function exchange_of(pinfo, from_host, key, place)
    local id = pinfo.number .. "/" .. place
    if not pinfo.visited and from_host then
        exchanges[id] = { request = pinfo.number, time = pinfo.rel_ts }
        asked[key] = exchanges[id]
    elseif not pinfo.visited and asked[key] then
        exchanges[id], asked[key] = asked[key], nil
        exchanges[id].reply = pinfo.number
    end
    return exchanges[id]
end

local function duration(seconds)
    local whole = math.floor(seconds)
    return NSTime.new(whole, math.floor((seconds - whole) * 1e9 + 0.5))
end

local function show_exchange(exchange, tree, pinfo, from_host)
    if from_host and exchange and exchange.reply then
        tree:add(fields.response_in, exchange.reply):set_generated()
    elseif from_host and pinfo.visited then
        tree:add_proto_expert_info(problems.unanswered)
    elseif not from_host and exchange then
        tree:add(fields.response_to, exchange.request):set_generated()
        tree:add(fields.response_time, duration(pinfo.rel_ts - exchange.time)):set_generated()
    elseif not from_host then
        tree:add_proto_expert_info(problems.unasked)
    end
end

-- Request records and reply payloads, framed or not. Each gives its summary, as phnsim --trace writes it.

local function finish(reader, command)
    if not command then
        reader.tree:add_proto_expert_info(problems.unknown)
    end
    if reader:left() > 0 then
        reader:mark_rest(problems.overlong, "Bytes behind the end of the record")
    end
    local name = command and command[1] or "unknown command"
    return name .. (#reader.shown > 0 and ": " .. table.concat(reader.shown, " ") or "")
end

local function read_request(reader, exchange)
    local number = reader:header("command", 4)
    local one, item = reader:header("one", 2)
    local command = COMMANDS[number]
    if exchange then
        exchange.command = number
    end
    if one and one ~= 1 then
        item:add_proto_expert_info(problems.header)
    elseif one and command then
        reader:record(command.request or {})
    end
    return finish(reader, command)
end

-- A refusal keeps the size of its record, filled up with zeros.
local function read_outcome(reader, command)
    local outcome = { result = 0 }
    if not reader:field("status", U16, 2, outcome) then
        return
    elseif command.result and not reader:field("result", U32, 4, outcome) then
        return
    elseif outcome.status == 0 and outcome.result == 0 then
        reader:record(command.reply or {})
        return
    end
    reader.tree:add_proto_expert_info(problems.refused)
    if reader:left() > 0 then
        reader:bytes("unused", reader:left())
    end
end

-- Handsets need not repeat the command: the request tells which one it was.
local function read_reply(reader, exchange)
    local repeated = reader:header("command", 4)
    local number = exchange and exchange.command or repeated
    if number ~= repeated then
        reader.tree:add(fields.command, number):set_generated()
    end
    local command = COMMANDS[number]
    if reader:header("one", 2) then
        read_outcome(reader, command or {})
    end
    return finish(reader, command)
end

local function read_record(reader, exchange, tree, pinfo, from_host)
    local summary = (from_host and read_request or read_reply)(reader, exchange)
    show_exchange(exchange, tree, pinfo, from_host)
    return summary
end

-- Frames of the diagnostic port.

local CHECK_TABLE = {}
for byte = 0, 255 do
    local value = byte
    for _ = 1, 8 do
        value = bit.bxor(bit.rshift(value, 1), value % 2 == 1 and 0x8408 or 0)
    end
    CHECK_TABLE[byte] = value
end

local function check_value(bytes)
    local value = 0xFFFF
    for i = 1, #bytes do
        value = bit.bxor(bit.rshift(value, 8), CHECK_TABLE[bit.band(bit.bxor(value, bytes:byte(i)), 0xFF)])
    end
    return bit.bxor(value, 0xFFFF)
end

-- The frame without its stuffing: the packet's own bytes where there is none.
local function unstuff(range, tree)
    local stuffed = range:raw()
    if not stuffed:find("\x7D", 1, true) then
        return range:tvb()
    end
    local bad = 0
    local bytes = stuffed:gsub("\x7D(.?)", function(byte)
        bad = bad + ((byte == "\x5E" or byte == "\x5D") and 0 or 1)
        return byte == "" and "" or string.char(bit.bxor(byte:byte(), 0x20))
    end)
    if bad > 0 then
        tree:add_proto_expert_info(problems.escape)
    end
    return bytes ~= "" and ByteArray.new(bytes, true):tvb("Without stuffing")
end

-- What stands before the record. Both give the sequence identifier, unless the frame ends before it.
local function read_request_header(reader)
    local code, item = reader:header("frame.code", 1)
    local constant = reader:bytes("frame.constant", 3)
    if constant and (code ~= COMMAND_CODE or reader.tvb:raw(1, 3) ~= "\x00\x13\x00") then
        item:add_proto_expert_info(problems.header)
    end
    return constant and (reader:header("sequence", 4))
end

-- The length counts what follows it, the flag included.
local function read_reply_header(reader, is_whole)
    local code, item = reader:header("frame.code", 1)
    if code ~= COMMAND_CODE then
        item:add_proto_expert_info(problems.header)
    end
    local length, mark = nil, nil
    if reader:bytes("frame.ignored", 4) then
        length, mark = reader:header("frame.length", 4)
    end
    if length and is_whole and length ~= reader:left() + 1 then
        mark:add_proto_expert_info(problems.header, ("The length should be %d"):format(reader:left() + 1))
    end
    return length and (reader:header("sequence", 4))
end

local function show_check(frame, right, tree)
    local range = frame:range(frame:len() - 2, 2)
    local item = tree:add_le(fields["frame.check"], range)
    if range:le_uint() ~= right then
        item:add_proto_expert_info(problems.check, ("The check value should be 0x%04x"):format(right))
    end
end

-- `frame` is without stuffing and flag. Gives the summary. A request with a wrong check value gets no reply.
local function read_frame(frame, tree, pinfo, from_host, place, is_whole)
    local header = cursor(frame, tree)
    local sequence = (from_host and read_request_header or read_reply_header)(header, is_whole)
    local size = header:left() - (is_whole and 2 or 0)
    if not sequence or size <= 0 then
        tree:add_proto_expert_info(problems.short, ("No record in a frame of %d bytes"):format(frame:len()))
        return "damaged frame"
    end
    if not from_host and size > LONGEST_REPLY_PAYLOAD then
        tree:add_proto_expert_info(problems.overlong)
    end
    local right = is_whole and check_value(frame:raw(0, frame:len() - 2))
    local is_heard = not from_host or right == frame:range(frame:len() - 2, 2):le_uint()
    local exchange = is_heard and exchange_of(pinfo, from_host, sequence, place) or nil
    local reader = cursor(frame:range(header.at, size):tvb(), tree)
    local summary = read_record(reader, exchange, tree, pinfo, from_host)
    if is_whole then
        show_check(frame, right, tree)
    end
    return ("#%d "):format(sequence) .. summary
end

local function dissect_frame(range, tree, pinfo, from_host, place)
    local item = tree:add(diagnostic, range, "PHNNRV " .. (from_host and "request" or "reply"))
    local is_whole = range:range(range:len() - 1, 1):uint() == FLAG
    if not is_whole then
        item:add_proto_expert_info(problems.cut)
    end
    if from_host and range:len() > LONGEST_REQUEST_FRAME then
        item:add_proto_expert_info(problems.overlong)
    end
    local frame = unstuff(range:range(0, range:len() - (is_whole and 1 or 0)), item)
    local summary = frame and read_frame(frame, item, pinfo, from_host, place, is_whole) or "damaged frame"
    if is_whole then
        item:add(fields["frame.flag"], range:range(range:len() - 1, 1))
    end
    item:append_text(", " .. summary)
    return summary
end

-- Packets.

-- Who sent it; by `guess` where the packet does not say it.
local function is_from_host(pinfo, tree, guess)
    if pinfo.p2p_dir == P2P_DIR_UNKNOWN then
        tree:add_proto_expert_info(problems.undirected)
        return guess
    end
    return pinfo.p2p_dir == P2P_DIR_SENT
end

local function show_packet(pinfo, from_host, summaries)
    pinfo.cols.protocol = "PHNNRV"
    pinfo.cols.src = from_host and "host" or "handset"
    pinfo.cols.dst = from_host and "handset" or "host"
    pinfo.cols.info = table.concat(summaries, "; ")
end

local MOST_FRAMES = 100 -- shown of a packet: Wireshark's tree is not endless

-- A flag ends a frame; one that ends nothing is no frame.
function diagnostic.dissector(tvb, pinfo, tree)
    local bytes, summaries = tvb:raw(), {}
    local from_host = is_from_host(pinfo, tree, bytes:sub(2, 4) == "\x00\x13\x00")
    for first, last in bytes:gmatch("()[^\x7E]+\x7E?()") do
        if #summaries == MOST_FRAMES then
            tree:add(fields.rest, tvb:range(first - 1)):add_proto_expert_info(problems.overlong)
            break
        end
        local range = tvb:range(first - 1, last - first)
        summaries[#summaries + 1] = dissect_frame(range, tree, pinfo, from_host, first)
    end
    show_packet(pinfo, from_host, summaries)
end

local function printable(bytes)
    return (bytes:gsub("\r", "\\r"):gsub("\n", "\\n"):gsub("%c", "?"))
end

-- A line or an answer. Gives the summary.
local function dissect_text(field, range, tree, pinfo, from_host)
    local shown = latin1(range:raw())
    local item = tree:add(modem, range, "AT " .. printable(shown))
    item:add(field, range, from_host and shown:gsub("\r$", "") or shown)
    if from_host and shown:sub(-1) ~= "\r" then
        item:add_proto_expert_info(problems.cut, "The line has no end")
    end
    show_exchange(exchange_of(pinfo, from_host, "AT", range:offset()), item, pinfo, from_host)
    return "AT " .. printable(shown)
end

local function dissect_record(range, tree, pinfo, from_host)
    local item = tree:add(modem, range, "PHNNRV " .. (from_host and "request" or "reply"))
    local exchange = exchange_of(pinfo, from_host, "record", range:offset())
    local summary = "raw " .. read_record(cursor(range:tvb(), item), exchange, item, pinfo, from_host)
    item:append_text(", " .. summary)
    return summary
end

-- The next piece of what the host or the handset has sent, and where it ends: AT commands, line ends between them, and
-- records, which take all that is left. The records of commands 10 and 13 begin as line ends do.
local function dissect_piece(tvb, at, tree, pinfo, from_host)
    local bytes = tvb:raw(at)
    local line = bytes:match("^[Aa][Tt][^\r]*\r?")
    if from_host and line then
        return dissect_text(fields.line, tvb:range(at, #line), tree, pinfo, true), at + #line
    elseif from_host and bytes:find("^[\r\n]") and bytes:sub(2, 2) ~= "\0" then
        return nil, at + 1
    elseif not from_host and not bytes:find("[^%g%s]") then
        return dissect_text(fields.answer, tvb:range(at), tree, pinfo, false), tvb:len()
    end
    return dissect_record(tvb:range(at), tree, pinfo, from_host), tvb:len()
end

function modem.dissector(tvb, pinfo, tree)
    local summaries, at = {}, 0
    local from_host = is_from_host(pinfo, tree, tvb:raw():find("^[Aa][Tt]") ~= nil)
    while at < tvb:len() do
        summaries[#summaries + 1], at = dissect_piece(tvb, at, tree, pinfo, from_host)
    end
    show_packet(pinfo, from_host, summaries)
end

local links = DissectorTable.get("wtap_encap")
links:add(wtap_encaps.USER0, diagnostic)
links:add(wtap_encaps.USER1, modem)
