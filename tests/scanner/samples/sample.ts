// A typed event emitter, written against the TypeScript handbook.
type Listener<T> = (event: T) => void;

/** Events by name, each with its payload type. */
interface Events {
  open: { path: string };
  close: { code: number };
}

export class Emitter<E extends Record<string, unknown>> {
  private listeners: { [K in keyof E]?: Listener<E[K]>[] } = {};

  on<K extends keyof E>(name: K, listener: Listener<E[K]>): () => void {
    (this.listeners[name] ??= []).push(listener);
    return () => this.off(name, listener);
  }

  off<K extends keyof E>(name: K, listener: Listener<E[K]>): void {
    const list = this.listeners[name];
    if (!list) return;
    this.listeners[name] = list.filter((l) => l !== listener);
  }

  emit<K extends keyof E>(name: K, event: E[K]): number {
    /* every listener in order */
    const list = this.listeners[name] ?? [];
    for (const listener of list) listener(event);
    return list.length;
  }
}

const emitter = new Emitter<Events>();
const off = emitter.on("open", (e) => console.log(`opened ${e.path} at ${Date.now() / 1000}`));
emitter.emit('open', { path: "/tmp/a's" });
const pattern = /^[a-z]+"?$/i;
off();
export default emitter as Emitter<Events>;
