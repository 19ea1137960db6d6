// A small task queue, written against the Dart language tour.
library sample.tasks;

import 'dart:async';
import 'dart:collection' show Queue;

/// How urgent a task is.
enum Priority { low, normal, high }

/// A unit of work with a name and a priority.
///
/// Tasks compare by [priority] first, then by [name].
class Task implements Comparable<Task> {
  final String name;
  final Priority priority;
  late final DateTime created = DateTime.now();

  Task(this.name, {this.priority = Priority.normal});

  @override
  int compareTo(Task other) =>
      other.priority.index - priority.index != 0
          ? other.priority.index - priority.index
          : name.compareTo(other.name);

  @override
  String toString() => 'Task($name, ${priority.name})';
}

/* The queue keeps tasks in order and runs them one at a time.
   A finished task is reported on [done]. */
class TaskQueue {
  final _pending = Queue<Task>();
  final _done = StreamController<Task>.broadcast();
  var _running = false;
  static const int limit = 0x100;
  static const double backoff = 1.5e-2;

  Stream<Task> get done => _done.stream;
  int get length => _pending.length;

  void add(Task t) {
    if (_pending.length >= limit) {
      throw StateError("queue full: \"${t.name}\" dropped");
    }
    _pending.add(t);
  }

  Future<void> runAll(Future<void> Function(Task) work) async {
    if (_running) return;
    _running = true;
    try {
      while (_pending.isNotEmpty) {
        final t = _pending.removeFirst();
        await work(t); // one at a time
        _done.add(t);
      }
    } finally {
      _running = false;
    }
  }
}

const usage = '''
Usage: tasks [--verbose]
  Runs the queued tasks in order.
''';

final pattern = r'^\d+\s*$';

Future<void> main(List<String> args) async {
  final queue = TaskQueue()
    ..add(Task('build', priority: Priority.high))
    ..add(Task("test"))
    ..add(Task('deploy', priority: Priority.low));
  queue.done.listen((t) => print('done: $t'));
  await queue.runAll((t) => Future.delayed(Duration(milliseconds: 10)));
  print(args.isEmpty ? usage : 'args: ${args.join(', ')}');
}
