-- A small queue with a maximum size, written against the Lua 5.4 manual.
local Queue = {}
Queue.__index = Queue

--[[ Creates a queue.
     `limit` is the most items it keeps; older ones drop out. ]]
function Queue.new(limit)
  return setmetatable({ first = 1, last = 0, items = {}, limit = limit or 16 }, Queue)
end

--[==[ A long comment with ]] inside
that goes on ]==]
function Queue:push(value)
  self.last = self.last + 1
  self.items[self.last] = value
  if self.last - self.first + 1 > self.limit then
    self.items[self.first] = nil
    self.first = self.first + 1
  end
end

function Queue:pop()
  if self.first > self.last then return nil end
  local value = self.items[self.first]
  self.items[self.first] = nil -- let it go
  self.first = self.first + 1
  return value
end

local q = Queue.new(3)
for i = 1, 5 do q:push(i * 0x10) end
local text = [[
multi-line "string" with 'quotes'
]]
local level = [=[ nested ]] still ]=]
print(string.format("%d items, first %s", #q.items, tostring(q:pop())), 'it\'s', 1.5e3)
goto done
::done::
