// A fixed-size ring buffer, written against the Zig language reference.
const std = @import("std");
const testing = std.testing;
const Allocator = std.mem.Allocator;

/// Errors the buffer reports.
pub const RingError = error{ Full, Empty };

/// A ring of at most `capacity` items of type `T`.
///
/// Pushing into a full ring fails with `error.Full`.
pub fn Ring(comptime T: type, comptime capacity: usize) type {
    return struct {
        const Self = @This();

        items: [capacity]T = undefined,
        head: usize = 0,
        len: usize = 0,

        pub fn push(self: *Self, item: T) RingError!void {
            if (self.len == capacity) return error.Full;
            self.items[(self.head + self.len) % capacity] = item;
            self.len += 1;
        }

        pub fn pop(self: *Self) RingError!T {
            if (self.len == 0) return RingError.Empty;
            defer {
                self.head = (self.head + 1) % capacity;
                self.len -= 1;
            }
            return self.items[self.head];
        }

        pub fn isEmpty(self: Self) bool {
            return self.len == 0;
        }
    };
}

const banner =
    \\Ring buffer demo
    \\  usage: ring [count]
    \\  "count" defaults to 16
;

fn parseCount(arg: ?[]const u8) !u32 {
    const text = arg orelse return 16;
    return std.fmt.parseInt(u32, text, 10) catch |err| {
        std.debug.print("bad count '{s}': {}\n", .{ text, err });
        return err;
    };
}

pub fn main() !void {
    var gpa = std.heap.GeneralPurposeAllocator(.{}){};
    defer _ = gpa.deinit();
    const allocator: Allocator = gpa.allocator();
    const args = try std.process.argsAlloc(allocator);
    defer std.process.argsFree(allocator, args);

    const count = try parseCount(if (args.len > 1) args[1] else null);
    var ring = Ring(u32, 8){};
    var i: u32 = 0;
    while (i < count) : (i += 1) {
        ring.push(i * 0x10) catch {
            _ = try ring.pop(); // drop the oldest
            try ring.push(i);
        };
    }
    std.debug.print("{s}\nlast: {d}, sep: '{c}', ratio: {d}\n", .{ banner, ring.len, ',', 1.5e3 });
}

test "ring keeps order" {
    var r = Ring(u8, 2){};
    try r.push('a');
    try r.push('\n');
    try testing.expectError(error.Full, r.push('c'));
    try testing.expectEqual(@as(u8, 'a'), try r.pop());
    const mask: u8 = 0b1010_0101;
    _ = mask;
}
