// A counter with a greeting, written against the React documentation's
// "Writing markup with JSX" page: elements, attributes and expressions.
import { useState } from "react";

/* The greeting changes with the hour. */
function Greeting({ name }) {
  const hour = new Date().getHours();
  const part = hour < 12 ? 'morning' : "day";
  return <h1 className="greeting">Good {part}, {name}! It's a fine day.</h1>;
}

export default function Counter({ start = 0 }) {
  const [count, setCount] = useState(start);
  return (
    <div className="counter">
      <Greeting name="Ada" />
      <p>You've clicked {count} times.</p>
      <button onClick={() => setCount(count + 1)} disabled={count >= 10}>
        Add one
      </button>
      {count > 5 && <p>That's a lot of clicks, isn't it?</p>}
    </div>
  );
}
