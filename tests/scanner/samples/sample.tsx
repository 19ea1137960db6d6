// A list of tasks, written against the TypeScript handbook's JSX chapter:
// elements, fragments, attributes, spread props, expressions and generics.
import React, { useState } from "react";

type Task = { id: number; title: string; done: boolean };
const labels: Record<string, string> = { done: "Done", open: 'Open', late: "Late" };
const describe = (t: Task): string => (t.done ? labels["done"] : labels['open']);
interface ListProps<T> {
  items: Array<T>;
  render: (item: T) => JSX.Element;
}

/** Renders any list; the empty list says so. */
function List<T,>({ items, render }: ListProps<T>) {
  if (items.length === 0) {
    return <p className="empty">There's nothing here, isn't that nice?</p>;
  }
  return <ul>{items.map(render)}</ul>;
}

export default function Tasks(props: { initial: Task[] }) {
  const [tasks, setTasks] = useState<Task[]>(props.initial);
  const open = tasks.filter((t) => !t.done).length;
  const toggle = (id: number) =>
    setTasks(tasks.map((t) => (t.id === id ? { ...t, done: !t.done } : t)));
  return (
    <>
      <h2 title='Tasks'>Today's tasks ({open} open)</h2>
      <List
        items={tasks}
        render={(t) => (
          <li key={t.id} onClick={() => toggle(t.id)}>
            {t.done ? "✓ " : ""}{t.title}
          </li>
        )}
      />
      <footer {...props}>Don't forget: {`${open} left`}</footer>
    </>
  );
}
